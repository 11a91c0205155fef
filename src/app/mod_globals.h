#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "config/ini_value.h"
#include "platform/date_time.h"
#include "platform/error_log.h"
#include "platform/failure.h"
#include "platform/file_system.h"
#include "platform/regional_formats.h"

namespace trellivan {

/// Where a program has its files, each as a full path in the system's own form.
struct ProgramPaths {
    std::string configFile;
    std::string errorLogFile;
    std::string folder;  ///< relative paths of databases start here
};

/// The two global paths, and the routines that belong to no window: settings values and the error log.
/// It borrows what it is given. No member fails: what goes wrong inside is recorded here, or lost where the
/// error log itself cannot be written.
class modGlobals {
public:
    modGlobals(ProgramPaths paths, platform::ErrorLog& errorLog, platform::FileSystem& files,
               platform::ProfileFile& profile, const platform::Clock& clock,
               const platform::RegionalFormats& formats);

    /// Fixes the paths, reads the error log's limits from the settings and trims the log. Once, at start.
    void GlobalsMain();

    /// Full path of the settings file; empty until GlobalsMain has run.
    [[nodiscard]] const std::string& ConfigFilePath() const { return ConfigFilePath_; }

    /// A path as given, or, where it is relative, the path in the program's folder.
    [[nodiscard]] std::string FullPath(const std::string& path) const;

    /// Reads one key of a profile file into `value`, which stays untouched unless the result is true.
    /// `valueKind` is one of value_kind; any other kind gives false. `length` is the buffer's: one more than
    /// the most characters that are read.
    bool GetINIValue(const std::string& file, const std::string& section, const std::string& key,
                     IniValue& value, std::int32_t valueKind, std::int32_t length);

    /// The text of one key of the settings file; empty where there is none.
    [[nodiscard]] std::string ReadINIText(const std::string& section, const std::string& key);

    /// Writes keys of the settings file, all of them or none. A write that fails is not detected.
    void WriteINIValues(const std::vector<platform::ProfileEntry>& entries);

    /// Adds one record to the error log. A record that cannot be written is lost without a trace.
    void WriteErrorLog(const std::string& number, const std::string& description,
                       const std::string& procedure);
    void WriteErrorLog(const platform::Failure& failure, const std::string& procedure);

private:
    void SetGlobals();
    [[nodiscard]] std::int32_t LogLineLimit();
    [[nodiscard]] platform::DateTime LogAgeCutoff();

    ProgramPaths paths_;
    platform::ErrorLog& errorLog_;
    platform::FileSystem& files_;
    platform::ProfileFile& profile_;
    const platform::Clock& clock_;
    const platform::RegionalFormats& formats_;

    std::string ConfigFilePath_;
    std::string ErrorLogFilePath_;
};

}  // namespace trellivan
