#pragma once

#include "platform/event_gate.h"
#include "platform/event_queue.h"
#include "platform/qt/timer.h"

namespace platform::qt {

/// The event loop, for the tick of a timer that pauses.
class EventQueue final : public platform::EventQueue {
public:
    /// What comes due on the timer in its own tick's pause is dropped.
    EventQueue(EventGate& gate, Timer& timer) : gate_(gate), timer_(timer) {}

    void ProcessPending() override;

private:
    EventGate& gate_;
    Timer& timer_;
};

}  // namespace platform::qt
