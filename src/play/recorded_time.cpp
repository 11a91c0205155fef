#include "play/recorded_time.h"

#include <exception>

namespace player {
namespace {

using platform::DateTime;
using platform::Value;

std::optional<DateTime> TimeIn(const Value& value, const platform::RegionalFormats& formats)
{
    if (const auto* moment = std::get_if<DateTime>(&value))
        return *moment;
    if (const auto* text = std::get_if<std::string>(&value))
        return formats.DateOrTime(*text);
    if (const auto* days = std::get_if<double>(&value))
        return platform::FromDayNumber(*days);
    return std::nullopt;
}

}  // namespace

std::optional<DateTime> RecordedTimeOf(const platform::RecordSet& records,
                                       const platform::RegionalFormats& formats)
{
    for (const char* column : {"datetimestamp", "timestamp"}) {
        try {
            if (const auto time = TimeIn(records.Field(column), formats))
                return time;
        } catch (const std::exception&) {
            // A column that is missing or cannot be read has no time; what is wrong with it shows when it is sent.
        }
    }
    return std::nullopt;
}

}  // namespace player
