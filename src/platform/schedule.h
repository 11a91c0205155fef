#pragma once

#include <chrono>
#include <optional>

namespace platform {

/// Says when the ticks of a timer are due, and which of them are dropped. It has no clock of its own: each call is told
/// the time, which never goes backwards.
class Schedule {
public:
    using Time = std::chrono::steady_clock::time_point;

    virtual ~Schedule() = default;

    /// Starts anew; nothing is due yet. The interval is at least 1 ms.
    virtual void Start(Time now, std::chrono::milliseconds interval) = 0;
    virtual void Stop() = 0;

    /// When the next tick is due. The moment may have passed. Nothing while no tick will come.
    [[nodiscard]] virtual std::optional<Time> NextDue() const = 0;

    /// True when a tick is due, which then counts as delivered. Each call delivers one, also where several are due.
    [[nodiscard]] virtual bool TakeDue(Time now) = 0;

    /// Takes off as many ticks as came due after one moment and up to another.
    virtual void DropBetween(Time after, Time upTo) = 0;
};

}  // namespace platform
