#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_system.h"

namespace player {

/// The keys of the settings that the player gives or looks at.
namespace keys {
inline constexpr const char* kTimer = "Timer";
inline constexpr const char* kConnection = "TCP/IP Settings";
inline constexpr const char* kDatabase = "Database File";
inline constexpr const char* kInterval = "Interval";
inline constexpr const char* kAddress = "IpAddress";
inline constexpr const char* kPort = "PortNumber";
inline constexpr const char* kRole = "Connect";
inline constexpr const char* kProtocol = "Protocol";
inline constexpr const char* kReconnect = "Reconnect";
inline constexpr const char* kFilePath = "FilePath";
}  // namespace keys

/// A value that stands over what a settings file says.
using Override = platform::ProfileEntry;

/// A settings file as it was when each of its values was first asked for. The tills that share it read it once.
class SettingsFile {
public:
    /// Without a path all values are empty. The profile outlives this object.
    SettingsFile(const platform::ProfileFile& profile, std::string path);

    [[nodiscard]] const std::string& Path() const { return path_; }
    [[nodiscard]] const std::string& Value(const std::string& section, const std::string& key,
                                           std::size_t length);

private:
    const platform::ProfileFile& profile_;
    std::string path_;
    std::map<std::string, std::string> values_;
};

/// The settings of one till: what the command line says stands over what the file says. Values of the command line are
/// never cut, and nothing is ever written.
class TillSettings final : public platform::ProfileFile {
public:
    TillSettings(std::shared_ptr<SettingsFile> file, std::vector<Override> overrides);

    [[nodiscard]] const std::string& Path() const { return file_->Path(); }
    [[nodiscard]] std::string Value(const char* section, const char* key) const;
    /// Puts a value over all others.
    void Put(const Override& value) { overrides_.insert(overrides_.begin(), value); }

    [[nodiscard]] std::string GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                       std::size_t length,
                                                       const std::string& path) const override;
    void WritePrivateProfileStringA(const std::vector<platform::ProfileEntry>& /*entries*/,
                                    const std::string& /*path*/) override
    {}

private:
    std::shared_ptr<SettingsFile> file_;
    std::vector<Override> overrides_;
};

}  // namespace player
