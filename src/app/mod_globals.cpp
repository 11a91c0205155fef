#include "app/mod_globals.h"

#include <filesystem>
#include <utility>
#include <variant>

#include "config/settings.h"

namespace trellivan {

modGlobals::modGlobals(ProgramPaths paths, platform::ErrorLog& errorLog, platform::FileSystem& files,
                       platform::ProfileFile& profile, const platform::Clock& clock,
                       const platform::RegionalFormats& formats)
    : paths_(std::move(paths)),
      errorLog_(errorLog),
      files_(files),
      profile_(profile),
      clock_(clock),
      formats_(formats)
{}

void modGlobals::SetGlobals()  // abandon
{
    try {
        ConfigFilePath_ = paths_.configFile;
        ErrorLogFilePath_ = paths_.errorLogFile;
    } catch (...) {
        WriteErrorLog(platform::CurrentFailure(), "modGlobals.SetGlobals");
    }
}

void modGlobals::GlobalsMain()  // abandon
{
    try {
        SetGlobals();
        const std::int32_t lineLimit = LogLineLimit();
        errorLog_.Trim(ErrorLogFilePath_, lineLimit, LogAgeCutoff());
    } catch (...) {
        WriteErrorLog(platform::CurrentFailure(), "modGlobals.GlobalsMain");
    }
}

std::int32_t modGlobals::LogLineLimit()
{
    IniValue lines = std::int16_t{0};
    if (!GetINIValue(ConfigFilePath_, keys::kErrorLog, keys::kErrorLogLength, lines, value_kind::kInteger,
                     kValueLength))
        return built_in::kLogLines;
    return std::get<std::int16_t>(lines);
}

platform::DateTime modGlobals::LogAgeCutoff()
{
    const auto days = formats_.Number(ReadINIText(keys::kErrorLog, keys::kErrorLogDays));
    return days ? platform::MinusDays(clock_.Now(), *days) : platform::kNoLogAgeLimit;
}

std::string modGlobals::FullPath(const std::string& path) const
{
    return std::filesystem::path(paths_.folder) / path;
}

}  // namespace trellivan
