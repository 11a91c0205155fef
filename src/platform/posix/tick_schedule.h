#pragma once

#include "platform/schedule.h"

namespace platform::posix {

/// Ticks at one pace: tick k is due at start + k x interval, whatever earlier ticks cost.
///
/// Ticks missed in a stall shorter than kLongestStall are delivered late, so that the mean pace is exact. Of what a longer
/// stall missed one tick is delivered late and the rest is dropped.
class TickSchedule final : public Schedule {
public:
    static constexpr std::chrono::milliseconds kLongestStall{250};

    void Start(Time now, std::chrono::milliseconds interval) override;
    void Stop() override { running_ = false; }
    [[nodiscard]] std::optional<Time> NextDue() const override;
    [[nodiscard]] bool TakeDue(Time now) override;
    void DropBetween(Time after, Time upTo) override;

private:
    /// Number of ticks due up to a moment, since the start.
    [[nodiscard]] std::chrono::nanoseconds::rep DueBy(Time moment) const;

    bool running_ = false;
    Time start_;
    std::chrono::nanoseconds interval_{1};
    std::chrono::nanoseconds::rep next_ = 1;  // tick 1 is the first; dropped ones are skipped
};

}  // namespace platform::posix
