#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "platform/schedule.h"
#include "play/lateness.h"

namespace player {

/// Measures how late the ticks of another schedule are taken. After the last record the tick that finds the feed at its
/// end comes at once; it is no record and not measured.
class MeasuredSchedule final : public platform::Schedule {
public:
    /// The ticks outlive this object. `atEnd` tells whether the feed is at its end.
    MeasuredSchedule(platform::Schedule& ticks, std::function<bool()> atEnd)
        : ticks_(ticks), atEnd_(std::move(atEnd))
    {}

    void Start(Time now, std::chrono::milliseconds interval) override;
    void Stop() override { ticks_.Stop(); }
    [[nodiscard]] std::optional<Time> NextDue() const override;
    [[nodiscard]] bool TakeDue(Time now) override;
    void DropBetween(Time after, Time upTo) override { ticks_.DropBetween(after, upTo); }

    [[nodiscard]] const Lateness& Measured() const { return lateness_; }

    /// Number of ticks that were later than one interval.
    [[nodiscard]] std::int64_t Late() const { return late_; }

private:
    platform::Schedule& ticks_;
    std::function<bool()> atEnd_;
    std::chrono::milliseconds interval_{0};
    Time started_;
    Lateness lateness_;
    std::int64_t late_ = 0;
};

}  // namespace player
