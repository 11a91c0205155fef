#include "play/till_settings.h"

#include <algorithm>
#include <utility>

#include "config/ini_value.h"
#include "platform/conversions.h"

namespace player {

SettingsFile::SettingsFile(const platform::ProfileFile& profile, std::string path)
    : profile_(profile), path_(std::move(path))
{}

const std::string& SettingsFile::Value(const std::string& section, const std::string& key, std::size_t length)
{
    const auto [value, isNew] =
        values_.try_emplace(section + '\n' + key + '\n' + std::to_string(length), std::string());
    if (isNew && !path_.empty())
        value->second = profile_.GetPrivateProfileStringA(section, key, length, path_);
    return value->second;
}

TillSettings::TillSettings(std::shared_ptr<SettingsFile> file, std::vector<Override> overrides)
    : file_(std::move(file)), overrides_(std::move(overrides))
{}

std::string TillSettings::Value(const char* section, const char* key) const
{
    return GetPrivateProfileStringA(section, key, trellivan::kValueLength, Path());
}

std::string TillSettings::GetPrivateProfileStringA(const std::string& section, const std::string& key,
                                                   std::size_t length, const std::string& /*path*/) const
{
    const auto found = std::ranges::find_if(overrides_, [&](const Override& one) {
        return platform::SameName(one.section, section) && platform::SameName(one.key, key);
    });
    return found != overrides_.end() ? found->value : file_->Value(section, key, length);
}

}  // namespace player
