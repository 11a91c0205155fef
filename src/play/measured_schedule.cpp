#include "play/measured_schedule.h"

namespace player {

void MeasuredSchedule::Start(Time now, std::chrono::milliseconds interval)
{
    started_ = now;
    interval_ = interval;
    ticks_.Start(now, interval);
}

std::optional<platform::Schedule::Time> MeasuredSchedule::NextDue() const
{
    const auto due = ticks_.NextDue();
    return due && atEnd_() ? std::optional(started_) : due;
}

bool MeasuredSchedule::TakeDue(Time now)
{
    const auto due = ticks_.NextDue();
    if (due && atEnd_())
        return true;
    if (!ticks_.TakeDue(now))
        return false;
    const auto late = now - *due;
    lateness_.Add(late);
    late_ += late > interval_ ? 1 : 0;
    return true;
}

}  // namespace player
