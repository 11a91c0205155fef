#pragma once

#include <optional>
#include <string_view>

namespace tools {

/// The day number (days since 30 December 1899, see platform::FromDayNumber) of a date-time in ISO 8601: a
/// date "2021-05-14", a time "15:07", "15:07:09" or "15:07:09.250" on day 0, or both with "T" or a blank
/// between. Nothing for any other text, a zone included.
[[nodiscard]] std::optional<double> DayNumberOfIso(std::string_view text);

}  // namespace tools
