#pragma once

#include "platform/file_system.h"
#include "platform/files/file_lock.h"

namespace platform::files {

/// The files of this machine. Append and OpenLocked take the same lock, which holds against other programs of this kind
/// too, and wait for it no longer than `longestWait`; after that they are a Failure (kPermissionDenied).
///
/// OpenLocked accepts regular files alone. Reading and replacing one holds a quarter of a megabyte of it in memory,
/// whatever its size.
class DiskFileSystem final : public FileSystem {
public:
    explicit DiskFileSystem(std::chrono::milliseconds longestWait = kLongestLockWait) : lockWait_(longestWait)
    {}

    [[nodiscard]] bool FileExists(const std::string& path) const override;
    void Append(const std::string& path, const std::string& bytes) override;
    [[nodiscard]] std::unique_ptr<LockedTextFile> OpenLocked(const std::string& path) override;

private:
    LockWait lockWait_;
};

}  // namespace platform::files
