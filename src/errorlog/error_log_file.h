#pragma once

#include <cstdint>
#include <string>

#include "platform/clock.h"
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

    void Trim(const std::string& path, std::int32_t lineLimit, platform::DateTime ageCutoff) override;

private:
    platform::FileSystem& files_;
    const platform::Clock& clock_;
    const platform::RegionalFormats& formats_;
};

}  // namespace trellivan
