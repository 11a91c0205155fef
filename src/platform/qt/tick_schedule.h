#pragma once

#include <chrono>

namespace platform::qt {

/// When the ticks of a periodic timer are due, and which of them are dropped. It reads no clock: each call is
/// told the time, which never goes backwards.
///
/// Tick k is due at start + k x interval, whatever earlier ticks cost.
class TickSchedule {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// A tick that is late by this much, and all that are due with it, are dropped.
    static constexpr std::chrono::milliseconds kLongestStall{250};

    /// Starts the phase anew; nothing is due yet. The interval is at least 1 ms.
    void Start(Time now, std::chrono::milliseconds interval);

    void Stop() { running_ = false; }

    [[nodiscard]] bool Running() const { return running_; }

    /// When the first tick that was neither taken nor dropped is due; it may have passed. Only while running.
    [[nodiscard]] Time NextDue() const { return start_ + next_ * interval_; }

    /// True when a tick is to be delivered now; that tick is taken. A backlog of late ticks is taken one a
    /// call.
    [[nodiscard]] bool TakeDue(Time now);

    /// Drops the ticks that came due after one moment and up to another. Ticks that were late already stay.
    void DropBetween(Time after, Time upTo);

private:
    /// Number of ticks due up to a moment, since the start.
    [[nodiscard]] std::chrono::nanoseconds::rep DueBy(Time moment) const;

    bool running_ = false;
    Time start_;
    std::chrono::nanoseconds interval_{1};
    std::chrono::nanoseconds::rep next_ = 1;  ///< Tick 1 is the first; dropped ones are skipped.
};

}  // namespace platform::qt
