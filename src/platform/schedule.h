#pragma once

#include <chrono>
#include <optional>

namespace platform {

/// When the ticks of a timer are due, and which of them are dropped. It reads no clock: each call is told the time, which
/// never goes backwards.
class Schedule {
public:
    using Time = std::chrono::steady_clock::time_point;

    virtual ~Schedule() = default;

    /// Starts anew; nothing is due yet. The interval is at least 1 ms.
    virtual void Start(Time now, std::chrono::milliseconds interval) = 0;
    virtual void Stop() = 0;

    /// When the first tick that was neither taken nor dropped is due, which may have passed; nothing while none will
    /// come.
    [[nodiscard]] virtual std::optional<Time> NextDue() const = 0;

    /// True when a tick is to be delivered now; that tick is taken. Of a backlog each call takes one.
    [[nodiscard]] virtual bool TakeDue(Time now) = 0;

    /// Drops the ticks that came due after one moment and up to another. Ticks that were late already stay.
    virtual void DropBetween(Time after, Time upTo) = 0;
};

}  // namespace platform
