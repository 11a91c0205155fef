#pragma once

#include <functional>

namespace platform {

/// A periodic tick at an exact mean pace.
///
/// Tick k is due at start + k x interval, whatever earlier ticks cost. Ticks missed in a short stall come late, one
/// per pass of the event loop; after a long stall one comes late and the rest is dropped. What comes due while a
/// tick lets other events in is dropped as well. A tick never starts inside a tick.
///
/// Events: OnTimer comes from the event loop through the gate; set once, it lives as long as the timer.
class Timer {
public:
    virtual ~Timer() = default;

    /// In milliseconds; 0 gives no ticks. What was due is dropped, and the phase starts anew.
    /// Failure: kInvalidPropertyValue for a negative interval; the old one stays.
    virtual void SetInterval(int milliseconds) = 0;

    /// Disabling drops what was due. Enabling a timer that is enabled changes nothing.
    virtual void SetEnabled(bool enabled) = 0;

    std::function<void()> OnTimer;
};

}  // namespace platform
