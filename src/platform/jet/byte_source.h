#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "platform/posix/file_descriptor.h"

namespace platform::jet {

/// Where the bytes of a database come from. They may change, and the source may shrink, at any moment.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /// Fills the buffer from an offset. Returns how many bytes there were: fewer than asked for only at the
    /// end. Throws Damage where the bytes cannot be read.
    [[nodiscard]] virtual std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> buffer) const = 0;

    /// In bytes, at this moment.
    [[nodiscard]] virtual std::uint64_t Size() const = 0;
};

/// What tells one content of a file from another without reading it.
struct FileState {
    std::uint64_t device = 0;
    std::uint64_t number = 0;
    std::uint64_t size = 0;
    std::int64_t contentChanged = 0;  // nanoseconds since 1970
    std::int64_t statusChanged = 0;

    bool operator==(const FileState&) const = default;

    /// Whether a change after the moment `now` (nanoseconds since 1970) shows in the state. It may not where the
    /// last one is but a moment ago: file systems count the time of changes in steps, of some milliseconds or, as
    /// on FAT, of 2 seconds.
    [[nodiscard]] bool ShowsChangesAfter(std::int64_t now) const;
};

/// A file, open for reading alone and without a lock, so that others may have it open for writing.
class FileSource : public ByteSource {
public:
    /// Failure: kDatabaseNotFound, kInvalidDatabasePath, kDatabaseCannotBeOpened (also for what is no regular
    /// file).
    explicit FileSource(const std::string& path);

    [[nodiscard]] std::size_t Read(std::uint64_t offset, std::span<std::uint8_t> buffer) const override;
    [[nodiscard]] std::uint64_t Size() const override;

    /// At this moment. All zeros where the system does not tell.
    [[nodiscard]] FileState State() const;

private:
    FileDescriptor file_;
};

}  // namespace platform::jet
