#include "platform/regional_formats.h"

namespace platform {

std::string GeneralDate(DateTime moment, const RegionalFormats& formats)
{
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const bool atMidnight = std::chrono::floor<std::chrono::seconds>(moment) == day;
    if (day == DayZero())
        return formats.LongTime(moment);
    if (atMidnight)
        return formats.ShortDate(moment);
    return formats.ShortDate(moment) + " " + formats.LongTime(moment);
}

}  // namespace platform
