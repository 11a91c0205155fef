#pragma once

#include "platform/file_system.h"
#include "platform/files/lock_wait.h"

namespace platform::files {

/// The files of this machine. Appending and OpenLocked take the same lock, also against other programs of
/// this kind.
class DiskFileSystem final : public FileSystem {
public:
    [[nodiscard]] bool FileExists(const std::string& path) const override;
    void Append(const std::string& path, const std::string& bytes) override;
    [[nodiscard]] std::unique_ptr<LockedTextFile> OpenLocked(const std::string& path) override;

private:
    LockWait lockWait_;
};

}  // namespace platform::files
