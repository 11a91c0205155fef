#pragma once

#include <QSocketNotifier>
#include <chrono>
#include <functional>

#include "platform/event_gate.h"
#include "platform/posix/file_descriptor.h"
#include "platform/qt/tick_schedule.h"
#include "platform/timer.h"

namespace platform::qt {

/// The timer over a timerfd, which Qt's own timers cannot replace: they round each wait up to a whole
/// millisecond and lose a tenth of the ticks at 1 ms.
class Timer final : public platform::Timer {
public:
    /// The gate outlives the timer. Failure: kOutOfMemory where the system gives no timer.
    explicit Timer(EventGate& gate);

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
    TickSchedule schedule_;
    std::chrono::milliseconds interval_{0};
    bool enabled_ = false;
    bool inTick_ = false;
    bool waitingAtGate_ = false;
    FileDescriptor descriptor_;
    QSocketNotifier notifier_;
};

}  // namespace platform::qt
