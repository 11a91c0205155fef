#pragma once

#include <cstdint>
#include <string>

#include "platform/date_time.h"
#include "platform/file_system.h"
#include "platform/regional_formats.h"

namespace trellivan {

/// Keeps the error log within two limits; no log, nothing to do. First, unless the line limit is negative,
/// only that many lines remain, the newest; a log that is short enough is not touched. Then, when the cutoff
/// is later than 1 January 1980, the lines whose date is not later than the cutoff go, and the log is written
/// anew in any case. Lines that begin with no date in the regional format stay; so do lines that begin with a
/// time alone.
///
/// The first failure ends the trimming silently; the log keeps what the last complete pass left. Records that
/// other programs write meanwhile wait for the end and are kept.
void TrimErrorLog(std::int32_t lineLimit, platform::DateTime ageCutoff, const std::string& path,
                  platform::FileSystem& files, const platform::RegionalFormats& formats);

}  // namespace trellivan
