#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/database.h"
#include "platform/regional_formats.h"
#include "play/measured_schedule.h"
#include "play/options.h"
#include "play/recorded_schedule.h"
#include "play/schedules.h"

namespace player {

/// When the records of one till are due: the schedule that the options ask for, how far the feed is in it, and how late
/// the records went out.
class Pace {
public:
    /// The formats outlive this object.
    Pace(const Options& options, const Phase& phase, const platform::RegionalFormats& formats);
    Pace(const Pace&) = delete;
    Pace& operator=(const Pace&) = delete;

    /// For the timer.
    [[nodiscard]] platform::Schedule& Ticks() { return isUnpaced_ ? *ticks_ : measured_; }

    /// How many ticks follow each other without a look at the clock.
    [[nodiscard]] int TicksAtOnce() const;

    /// The feed stands at the current record, or at its end; `beginsAgain` at the first record of a loop.
    void StandsAt(const platform::RecordSet& records, bool beginsAgain);

    [[nodiscard]] bool IsUnpaced() const { return isUnpaced_; }
    [[nodiscard]] bool FeedHasEnded() const { return feedHasEnded_; }
    [[nodiscard]] const Lateness& Measured() const { return measured_.Measured(); }
    [[nodiscard]] std::int64_t Late() const { return measured_.Late(); }

private:
    const platform::RegionalFormats& formats_;
    bool isUnpaced_;
    bool feedHasEnded_ = false;
    RecordedSchedule* recorded_ = nullptr;  // what ticks_ is, if the recording gives the rhythm
    std::unique_ptr<platform::Schedule> ticks_;
    MeasuredSchedule measured_;
};

}  // namespace player
