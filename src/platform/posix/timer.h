#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/event_gate.h"
#include "platform/event_loop.h"
#include "platform/schedule.h"
#include "platform/timer.h"

namespace platform::posix {

/// The timer over the event loop: a schedule says when its ticks are due.
class Timer final : public platform::Timer {
public:
    /// All three outlive the timer. The schedule is the timer's alone.
    Timer(EventGate& gate, EventLoop& loop, Schedule& schedule);

    void SetInterval(int milliseconds) override;
    void SetEnabled(bool enabled) override;

    /// Runs what lets other events in. When a tick does so, what comes due meanwhile is dropped.
    void DropDuring(const std::function<void()>& pause);

private:
    void Restart();
    void Expired();
    void Deliver();
    void Arm();

    EventGate& gate_;
    Schedule& schedule_;
    std::chrono::milliseconds interval_{0};
    bool enabled_ = false;
    bool inTick_ = false;
    bool waitingAtGate_ = false;
    std::unique_ptr<Alarm> alarm_;
};

}  // namespace platform::posix
