#pragma once

#include "platform/file_system.h"
#include "platform/files/file_lock.h"

namespace platform::files {

/// Profile files of this machine, in the encodings of ProfileContent. Only a regular file of 16 MiB at most is read. A
/// write takes the file's lock, for which it waits no longer than `longestWait`, and replaces the file (see Replacement),
/// or leaves it alone when nothing would change.
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
