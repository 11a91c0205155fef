#include "platform/qt/timer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cstdint>
#include <string>

#include "platform/failure.h"
#include "platform/failure_numbers.h"

namespace platform::qt {
namespace {

using Clock = std::chrono::steady_clock;  // counts as CLOCK_MONOTONIC does

FileDescriptor OpenDescriptor()
{
    FileDescriptor descriptor(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
    if (!descriptor.IsOpen())
        throw Failure(failure::kOutOfMemory, "The system gives no timer");
    return descriptor;
}

/// A moment as the descriptor takes it; one that has passed makes it expire at once.
itimerspec OnceAt(Clock::time_point moment)
{
    const auto sinceZero = moment.time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceZero);
    itimerspec once{};
    once.it_value.tv_sec = seconds.count();
    once.it_value.tv_nsec = std::chrono::nanoseconds(sinceZero - seconds).count();
    return once;
}

}  // namespace

Timer::Timer(EventGate& gate)
    : gate_(gate), descriptor_(OpenDescriptor()), notifier_(descriptor_.Number(), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { Expired(); });
}

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
    // Once read, the descriptor stays quiet until it is armed again, so it does not spin while the tick
    // waits.
    std::uint64_t expirations = 0;
    if (read(descriptor_.Number(), &expirations, sizeof expirations) <= 0)
        return;
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
    const bool mayExpire = schedule_.Running() && !inTick_ && !waitingAtGate_;
    const itimerspec next = mayExpire ? OnceAt(schedule_.NextDue()) : itimerspec{};
    timerfd_settime(descriptor_.Number(), TFD_TIMER_ABSTIME, &next, nullptr);
}

}  // namespace platform::qt
