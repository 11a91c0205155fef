#include "platform/posix/tick_schedule.h"

#include <algorithm>

namespace platform::posix {

void TickSchedule::Start(Time now, std::chrono::milliseconds interval)
{
    running_ = true;
    start_ = now;
    interval_ = interval;
    next_ = 1;
}

std::optional<Schedule::Time> TickSchedule::NextDue() const
{
    return running_ ? std::optional(start_ + next_ * interval_) : std::nullopt;
}

bool TickSchedule::TakeDue(Time now)
{
    const auto due = NextDue();
    if (!due || now < *due)
        return false;
    const bool stalled = now - *due >= kLongestStall;
    next_ = stalled ? DueBy(now) + 1 : next_ + 1;
    return true;
}

void TickSchedule::DropBetween(Time after, Time upTo)
{
    // Which of the late ticks are dropped makes no difference: only their number counts.
    if (running_)
        next_ += DueBy(upTo) - DueBy(after);
}

std::chrono::nanoseconds::rep TickSchedule::DueBy(Time moment) const
{
    return std::max(Time::duration::zero(), moment - start_) / interval_;
}

}  // namespace platform::posix
