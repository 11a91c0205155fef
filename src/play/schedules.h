#pragma once

#include <chrono>
#include <optional>

#include "platform/posix/tick_schedule.h"
#include "platform/schedule.h"

namespace player {

using Time = platform::Schedule::Time;

/// Where a till's ticks lie among those of the other tills: on a raster of its interval through one moment for all, a
/// share of the interval behind it, in whole quarters of a millisecond. Waking up costs more than a record does, and so
/// the tills of a quarter share it. Without that moment the ticks begin when they begin.
struct Phase {
    std::optional<Time> origin;
    double share = 0;  // of an interval, from 0 to 1

    /// The last point of the raster that is not later than this moment, which is not before the origin.
    [[nodiscard]] Time PointBefore(Time moment, std::chrono::nanoseconds interval) const;
};

/// One record an interval.
class PacedSchedule final : public platform::Schedule {
public:
    explicit PacedSchedule(const Phase& phase) : phase_(phase) {}

    void Start(Time now, std::chrono::milliseconds interval) override
    {
        ticks_.Start(phase_.PointBefore(now, interval), interval);
    }
    void Stop() override { ticks_.Stop(); }
    [[nodiscard]] std::optional<Time> NextDue() const override { return ticks_.NextDue(); }
    [[nodiscard]] bool TakeDue(Time now) override { return ticks_.TakeDue(now); }
    void DropBetween(Time after, Time upTo) override { ticks_.DropBetween(after, upTo); }

private:
    Phase phase_;
    platform::posix::TickSchedule ticks_;
};

/// Always due.
class UnpacedSchedule final : public platform::Schedule {
public:
    void Start(Time now, std::chrono::milliseconds /*interval*/) override { since_ = now; }
    void Stop() override { since_.reset(); }
    [[nodiscard]] std::optional<Time> NextDue() const override { return since_; }
    [[nodiscard]] bool TakeDue(Time /*now*/) override { return since_.has_value(); }
    void DropBetween(Time /*after*/, Time /*upTo*/) override {}

private:
    std::optional<Time> since_;
};

}  // namespace player
