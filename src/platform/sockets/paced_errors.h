#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "platform/failure.h"
#include "platform/sockets/gated_events.h"

namespace platform::sockets {

/// The errors of one control, a time apart, the first at once. A handler that connects anew on every
/// error would otherwise make 10,000 attempts a second while nobody listens, and fill the disk with their
/// records.
class PacedErrors {
public:
    /// Gate and loop are borrowed and outlive it. `raise` is called from the event loop through the gate.
    PacedErrors(EventGate& gate, EventLoop& loop, std::chrono::milliseconds apart,
                std::function<void(const Failure&)> raise);

    /// For an event of the control: raises the error inside it, unless it must be held back. A later error
    /// takes the place of one that is held back.
    void Report(Failure reason);

    /// What is held back is never raised. The pace goes on.
    void Drop();

private:
    using Clock = std::chrono::steady_clock;

    void RaiseHeld();

    std::chrono::milliseconds apart_;
    std::function<void(const Failure&)> raise_;
    std::optional<Failure> held_;
    Clock::time_point earliest_;  // moment of the next one
    GatedEvents gated_;
    std::unique_ptr<Alarm> alarm_;
};

}  // namespace platform::sockets
