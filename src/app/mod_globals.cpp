#include "app/mod_globals.h"

#include <filesystem>
#include <utility>

namespace trellivan {

modGlobals::modGlobals(std::string executableDirectory, platform::FileSystem& files,
                       platform::ProfileFile& profile, const platform::Clock& clock,
                       const platform::RegionalFormats& formats)
    : executableDirectory_(std::move(executableDirectory)),
      files_(files),
      profile_(profile),
      clock_(clock),
      formats_(formats)
{}

void modGlobals::SetGlobals()  // abandon
{
    try {
        ConfigFilePath_ = executableDirectory_ + "/Config.ini";
        ErrorLogFilePath_ = executableDirectory_ + "/Trellivan Error.log";
    } catch (...) {
        WriteErrorLog(platform::CurrentFailure(), "modGlobals.SetGlobals");
    }
}

void modGlobals::GlobalsMain()  // abandon
{
    try {
        SetGlobals();
    } catch (...) {
        WriteErrorLog(platform::CurrentFailure(), "modGlobals.GlobalsMain");
    }
}

std::string modGlobals::FullPath(const std::string& path) const
{
    return std::filesystem::path(executableDirectory_) / path;
}

}  // namespace trellivan
