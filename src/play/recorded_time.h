#pragma once

#include <optional>

#include "platform/database.h"
#include "platform/date_time.h"
#include "platform/regional_formats.h"

namespace player {

/// When the current record was recorded: by its column datetimestamp, else by timestamp. Nothing where neither is there
/// or holds a time; a time without a day is one of day zero. It never fails.
[[nodiscard]] std::optional<platform::DateTime> RecordedTimeOf(const platform::RecordSet& records,
                                                               const platform::RegionalFormats& formats);

}  // namespace player
