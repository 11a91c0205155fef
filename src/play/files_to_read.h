#pragma once

#include <memory>
#include <string>

#include "platform/file_system.h"

namespace player {

/// The files of this machine, none of which is ever written. The built-in settings count as a file.
class FilesToRead final : public platform::FileSystem {
public:
    /// What the settings' path is where they are built in: no file has this name.
    static constexpr const char* kBuiltIn = "";

    /// The disk outlives this object.
    explicit FilesToRead(const platform::FileSystem& disk) : disk_(disk) {}

    [[nodiscard]] bool FileExists(const std::string& path) const override
    {
        return path == kBuiltIn || disk_.FileExists(path);
    }
    void Append(const std::string& path, const std::string& bytes) override;
    [[nodiscard]] std::unique_ptr<platform::LockedTextFile> OpenLocked(const std::string& path) override;

private:
    const platform::FileSystem& disk_;
};

}  // namespace player
