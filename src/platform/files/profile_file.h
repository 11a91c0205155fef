#pragma once

#include "platform/file_system.h"
#include "platform/files/file_lock.h"

namespace platform::files {

/// Profile files of this machine: regular files of 16 MiB at most; anything else
/// cannot be read. A write replaces the file in one step (see Replacement) under a lock, for which it waits no longer than
/// `longestWait`, and touches nothing when the file would stay the same.
class DiskProfileFile final : public ProfileFile {
public:
    explicit DiskProfileFile(std::chrono::milliseconds longestWait = kLongestLockWait)
        : lockWait_(longestWait)
    {}

    [[nodiscard]] std::string GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                       std::size_t length,
                                                       const std::string& path) const override;
    void WritePrivateProfileStringA(const std::vector<ProfileEntry>& entries,
                                    const std::string& path) override;

private:
    LockWait lockWait_;
};

}  // namespace platform::files
