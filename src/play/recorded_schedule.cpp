#include "play/recorded_schedule.h"

#include <algorithm>

namespace player {
namespace {

// A pause that nobody waits for, and that still counts in nanoseconds.
constexpr std::chrono::hours kLongestPause{24 * 365 * 100};

bool HasDay(platform::DateTime moment)
{
    return std::chrono::floor<std::chrono::days>(moment) != platform::DayZero();
}

}  // namespace

void RecordedSchedule::NextRecord(std::optional<platform::DateTime> recorded, bool beginsAgain)
{
    current_ = recorded;
    if (!running_)
        return;
    due_ = lastDue_ + interval_;
    if (!recorded)
        return;
    if (!beginsAgain && FollowsAnchor(*recorded))
        due_ = std::max(lastDue_, anchor_->due + Played(*recorded - anchor_->recorded));
    anchor_ = Point{*recorded, due_};
}

void RecordedSchedule::Start(Time now, std::chrono::milliseconds interval)
{
    running_ = true;
    interval_ = interval;
    due_ = phase_.origin ? phase_.PointBefore(now, interval) + interval : now;
    lastDue_ = due_;
    anchor_ = current_ ? std::optional(Point{*current_, due_}) : std::nullopt;
}

std::optional<Time> RecordedSchedule::NextDue() const
{
    return running_ ? std::optional(due_) : std::nullopt;
}

bool RecordedSchedule::TakeDue(Time now)
{
    if (!running_ || now < due_)
        return false;
    lastDue_ = due_;
    due_ += interval_;  // until it is known which record comes next
    return true;
}

/// A time without a day says nothing about how long ago a day was.
bool RecordedSchedule::FollowsAnchor(platform::DateTime recorded) const
{
    return anchor_ && recorded >= anchor_->recorded && HasDay(recorded) == HasDay(anchor_->recorded);
}

std::chrono::nanoseconds RecordedSchedule::Played(std::chrono::milliseconds recordedGap) const
{
    const std::chrono::duration<double> scaled = std::chrono::duration<double>(recordedGap) / rhythm_.speed;
    const auto gap = std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::min<std::chrono::duration<double>>(scaled, kLongestPause));
    return rhythm_.longestGap ? std::min(gap, *rhythm_.longestGap) : gap;
}

}  // namespace player
