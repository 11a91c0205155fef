#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A text file that is open and locked. As long as this object lives, an Append by this or another running Trellivan waits,
/// so that no record is lost when the content is replaced.
///
/// Lines:     bytes, in the encoding of the file, up to CR LF, to LF, or to the end of the file for a last
///            line without either; a CR elsewhere is part of its line. An empty file has no line.
/// Failure:   kPermissionDenied, kPathFileAccess, kDiskFull; the content is then as it was.
class LockedTextFile {
public:
    virtual ~LockedTextFile() = default;

    [[nodiscard]] virtual std::int64_t CountLines() const = 0;

    /// Replaces the content, in one step, by the lines for which `keep` answers true, in their order, each
    /// followed by CR LF. `keep` is called once for every line with its number, counted from 1, and its text,
    /// which lives for that call only (of a line longer than 64 KiB perhaps only the beginning). What it
    /// throws passes through.
    virtual void KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep) = 0;
};

/// Files, by full path in UTF-8.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// True when a file exists there; false for a folder, and where it cannot be told.
    [[nodiscard]] virtual bool FileExists(const std::string& path) const = 0;

    /// Appends bytes at the end of a file in one write, creating it when missing. Programs that append to one
    /// file at the same time lose nothing. Failure: kPathNotFound, kPermissionDenied (also when another program keeps
    /// the file locked), kPathFileAccess, kDiskFull.
    virtual void Append(const std::string& path, const std::string& bytes) = 0;

    /// Opens an existing regular file for reading and replacing. While another program appends to it or has it open in
    /// this way, it waits a moment. Failure: as for Append.
    [[nodiscard]] virtual std::unique_ptr<LockedTextFile> OpenLocked(const std::string& path) = 0;
};

/// One key of one section with its value, in UTF-8. The names hold no "=", "]" or line break.
struct ProfileEntry {
    std::string section;
    std::string key;
    std::string value;
};

/// Profile (INI) files: named sections, each with keys that hold text. Names match without regard to case.
/// Texts are UTF-8. Neither call fails.
class ProfileFile {
public:
    virtual ~ProfileFile() = default;

    /// The value of a key, cut to `length` - 1 characters. Empty for a file that cannot be read, a missing
    /// section, a missing key and an empty value alike.
    [[nodiscard]] virtual std::string GetPrivateProfileStringA(const std::string& section,
                                                               const std::string& key, std::size_t length,
                                                               const std::string& path) const = 0;

    /// Gives keys their values, one after the other, creating a key or its section where it is missing; all other bytes
    /// of the file stay as they are. In one step: a file that does not exist or cannot be written (a full disk) keeps
    /// every old value.
    virtual void WritePrivateProfileStringA(const std::vector<ProfileEntry>& entries,
                                            const std::string& path) = 0;
};

}  // namespace platform
