#pragma once

#include <functional>
#include <utility>

#include "platform/event_gate.h"
#include "platform/posix/timer.h"

namespace platform::posix {

/// The event queue of a program, for the tick of a timer that pauses.
class EventQueue final : public platform::EventQueue {
public:
    /// `runPass` lets one pass of everything in from which events come. What comes due on the timer in its own tick's
    /// pause is dropped.
    EventQueue(EventGate& gate, Timer& timer, std::function<void()> runPass)
        : gate_(gate), timer_(timer), runPass_(std::move(runPass))
    {}

    void ProcessPending() override
    {
        timer_.DropDuring([this] { gate_.Pause(runPass_); });
    }

private:
    EventGate& gate_;
    Timer& timer_;
    std::function<void()> runPass_;
};

}  // namespace platform::posix
