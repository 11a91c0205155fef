#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

#include "make_database/bytes.h"

namespace tools {

/// Where the pages of a database go.
class PageStore {
public:
    virtual ~PageStore() = default;

    /// Writes a page at its place. Pages come in nearly ascending order and may be written again; all pages
    /// of a store have the same size. Failure: kPathFileAccess, kDiskFull.
    virtual void Write(std::uint32_t number, const Bytes& page) = 0;
};

/// A database in memory.
class MemoryPages : public PageStore {
public:
    void Write(std::uint32_t number, const Bytes& page) override;

    [[nodiscard]] const Bytes& Content() const { return content_; }

private:
    Bytes content_;
};

/// A database file. It is made beside its place under a name of its own and takes its place at Commit, so
/// that a failure leaves neither half a file nor the earlier one destroyed.
class FilePages : public PageStore {
public:
    /// Failure: kPathFileAccess where no file can be made.
    explicit FilePages(const std::string& path);
    ~FilePages() override;
    FilePages(const FilePages&) = delete;
    FilePages& operator=(const FilePages&) = delete;

    void Write(std::uint32_t number, const Bytes& page) override;

    /// Failure: kPathFileAccess, kDiskFull; nothing is left behind then.
    void Commit();

private:
    void FailUnlessGood() const;

    std::string path_;
    std::string partPath_;
    std::vector<char> buffer_;
    std::ofstream file_;
    std::uint32_t nextInPlace_ = 0;
};

}  // namespace tools
