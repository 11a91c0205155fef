#pragma once

#include <cstdint>
#include <string>

#include "platform/date_time.h"
#include "platform/error_log.h"
#include "platform/file_system.h"
#include "platform/regional_formats.h"

namespace trellivan {

/// The error log as a text file in code page 1252: one line a record, with time of writing, number, description and
/// procedure, separated by "|" and ended by CR LF. No field is quoted or escaped.
///
/// It keeps nothing between calls: each opens the file anew, so that others may copy or delete it at any time.
/// What it is given is borrowed.
class ErrorLogFile : public platform::ErrorLog {
public:
    ErrorLogFile(platform::FileSystem& files, const platform::Clock& clock,
                 const platform::RegionalFormats& formats)
        : files_(files), clock_(clock), formats_(formats)
    {}

    /// Failure: as FileSystem::Append.
    void Write(const std::string& path, const platform::ErrorRecord& record) override;

    /// No log, nothing to do. First, unless the line limit is negative, only that many lines remain, the newest; a log
    /// that is short enough is not touched. Then, when the cutoff is later than kNoLogAgeLimit, the lines go whose date is
    /// not later than the cutoff, and the log is written anew in any case. Lines that begin with no date in the
    /// regional format stay, also those that begin with a time alone.
    ///
    /// The first failure ends the trimming silently; the log keeps what the last complete pass left. Records that
    /// other programs write meanwhile wait for the end and are kept.
    void Trim(const std::string& path, std::int32_t lineLimit, platform::DateTime ageCutoff) override;

private:
    platform::FileSystem& files_;
    const platform::Clock& clock_;
    const platform::RegionalFormats& formats_;
};

}  // namespace trellivan
