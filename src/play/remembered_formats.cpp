#include "play/remembered_formats.h"

#include <chrono>

namespace player {

std::string RememberedFormats::LongTime(platform::DateTime moment) const
{
    const auto sinceMidnight = moment - std::chrono::floor<std::chrono::days>(moment);
    return times_.Of(sinceMidnight.count(), [&] { return formats_.LongTime(moment); });
}

std::string RememberedFormats::ShortDate(platform::DateTime moment) const
{
    const auto day = std::chrono::floor<std::chrono::days>(moment).time_since_epoch();
    return days_.Of(day.count(), [&] { return formats_.ShortDate(moment); });
}

}  // namespace player
