#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "config/settings.h"
#include "platform/file_system.h"

namespace player {

namespace keys = trellivan::keys;
namespace built_in = trellivan::built_in;

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
