#include "platform/qt/tick_schedule.h"

#include <algorithm>

namespace platform::qt {

void TickSchedule::Start(Time now, std::chrono::milliseconds interval)
{
    running_ = true;
    start_ = now;
    interval_ = interval;
    next_ = 1;
}

bool TickSchedule::TakeDue(Time now)
{
    if (!running_ || now < NextDue())
        return false;
    if (now - NextDue() >= kLongestStall) {
        next_ = DueBy(now) + 1;
        return false;
    }
    ++next_;
    return true;
}

void TickSchedule::DropBetween(Time after, Time upTo)
{
    // A late tick has no identity: the backlog moves up to just before the first tick that is yet to come.
    if (running_)
        next_ += DueBy(upTo) - DueBy(after);
}

std::chrono::nanoseconds::rep TickSchedule::DueBy(Time moment) const
{
    return std::max(Time::duration::zero(), moment - start_) / interval_;
}

}  // namespace platform::qt
