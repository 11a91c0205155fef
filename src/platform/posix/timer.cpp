#include "platform/posix/timer.h"

#include <string>

#include "platform/failure.h"

namespace platform::posix {
namespace {

using Clock = std::chrono::steady_clock;

}  // namespace

Timer::Timer(EventGate& gate, EventLoop& loop, Schedule& schedule)
    : gate_(gate), schedule_(schedule), alarm_(loop.NewAlarm([this] { Expired(); }))
{}

void Timer::SetInterval(int milliseconds)
{
    if (milliseconds < 0)
        throw Failure(failure::kInvalidPropertyValue,
                      "A timer's interval cannot be " + std::to_string(milliseconds));
    interval_ = std::chrono::milliseconds(milliseconds);
    Restart();
}

void Timer::SetEnabled(bool enabled)
{
    if (enabled == enabled_)
        return;
    enabled_ = enabled;
    Restart();
}

void Timer::DropDuring(const std::function<void()>& pause)
{
    const auto begin = Clock::now();
    pause();
    if (inTick_)
        schedule_.DropBetween(begin, Clock::now());
}

void Timer::Restart()
{
    if (enabled_ && interval_ > interval_.zero())
        schedule_.Start(Clock::now(), interval_);
    else
        schedule_.Stop();
    Arm();
}

void Timer::Expired()
{
    waitingAtGate_ = true;
    gate_.Enter([this] { Deliver(); });
}

void Timer::Deliver()
{
    struct Tick {
        explicit Tick(Timer& timer) : timer_(timer) { timer_.inTick_ = true; }
        ~Tick()
        {
            timer_.inTick_ = false;
            timer_.Arm();
        }
        Tick(const Tick&) = delete;
        Tick& operator=(const Tick&) = delete;
        Timer& timer_;
    };

    waitingAtGate_ = false;
    const Tick tick(*this);
    if (schedule_.TakeDue(Clock::now()) && OnTimer)
        OnTimer();
}

void Timer::Arm()
{
    // Within a tick, and while one waits for its turn, no further one can start: the end of that tick arms.
    const auto next = schedule_.NextDue();
    if (next && !inTick_ && !waitingAtGate_)
        alarm_->Set(*next);
    else
        alarm_->Clear();
}

}  // namespace platform::posix
