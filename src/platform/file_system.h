#pragma once

#include <memory>
#include <string>

#include "platform/locked_text_file.h"

namespace platform {

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

}  // namespace platform
