#pragma once

#include <string>

namespace platform {

/// Files, by full path in UTF-8.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// True when a file exists there; false for a folder, and where it cannot be told.
    [[nodiscard]] virtual bool FileExists(const std::string& path) const = 0;

    /// Appends bytes at the end of a file in one write, creating it when missing. Programs that append to one
    /// file at the same time lose nothing. Failure: kPathNotFound, kPermissionDenied, kPathFileAccess,
    /// kDiskFull.
    virtual void Append(const std::string& path, const std::string& bytes) = 0;
};

}  // namespace platform
