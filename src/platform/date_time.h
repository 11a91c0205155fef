#pragma once

#include <chrono>

namespace platform {

/// A date and time of day on the wall, in no time zone, exact to the millisecond. Years 100 to 9999.
using DateTime = std::chrono::local_time<std::chrono::milliseconds>;

/// Day 0 of a day number: 30 December 1899. A date-time on this day shows as its time alone.
[[nodiscard]] std::chrono::local_days DayZero();

/// The date-time that a day number stands for, to the nearest millisecond: whole days since day 0, the
/// fraction counting forward from that day's midnight, also before day 0 (-1.25 is 29 December 1899, 06:00).
/// Failure: kOverflow for a day outside the years 100 to 9999 or a number that is not finite.
[[nodiscard]] DateTime FromDayNumber(double dayNumber);

/// A date-time moved back by a number of days, fractions included. Failure: kOverflow as above.
[[nodiscard]] DateTime MinusDays(DateTime moment, double days);

/// The clock on the wall, from which alone the logic learns the time.
class Clock {
public:
    virtual ~Clock() = default;

    /// The current local date and time.
    [[nodiscard]] virtual DateTime Now() const = 0;
};

}  // namespace platform
