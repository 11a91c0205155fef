#pragma once

#include "platform/files/lock_wait.h"
#include "platform/profile_file.h"

namespace platform::files {

/// Profile files of this machine. A write replaces the file in one step (see Replacement) under a lock, and
/// touches nothing when the key has the value already.
class DiskProfileFile final : public ProfileFile {
public:
    [[nodiscard]] std::string GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                       std::size_t length,
                                                       const std::string& path) const override;
    void WritePrivateProfileStringA(const std::string& section, const std::string& key,
                                    const std::string& value, const std::string& path) override;

private:
    LockWait lockWait_;
};

}  // namespace platform::files
