#pragma once

#include <chrono>
#include <optional>

#include "platform/date_time.h"
#include "platform/schedule.h"
#include "play/schedules.h"

namespace player {

/// Each record as long after the one before as the recorded times are apart. A record is due by the moment at which the
/// one before was due, not by when it went out, so that nothing adds up. None is dropped.
class RecordedSchedule final : public platform::Schedule {
public:
    struct Rhythm {
        double speed = 1;
        /// A longer pause of the feed is shortened to this.
        std::optional<std::chrono::nanoseconds> longestGap{};
    };

    RecordedSchedule(const Rhythm& rhythm, const Phase& phase) : rhythm_(rhythm), phase_(phase) {}

    /// The feed has moved on to a record. One without a recorded time, or with an earlier one than the record before,
    /// takes one interval, and so does the first record of a feed that begins again. Over records without a time the
    /// rhythm of the others goes on.
    void NextRecord(std::optional<platform::DateTime> recorded, bool beginsAgain);

    /// The record at which the feed stands is due at once, or at the next point of the raster.
    void Start(Time now, std::chrono::milliseconds interval) override;
    void Stop() override { running_ = false; }
    [[nodiscard]] std::optional<Time> NextDue() const override;
    [[nodiscard]] bool TakeDue(Time now) override;
    void DropBetween(Time /*after*/, Time /*upTo*/) override {}

private:
    /// A record that had a time.
    struct Point {
        platform::DateTime recorded;
        Time due;
    };

    [[nodiscard]] bool FollowsAnchor(platform::DateTime recorded) const;
    [[nodiscard]] std::chrono::nanoseconds Played(std::chrono::milliseconds recordedGap) const;

    Rhythm rhythm_;
    Phase phase_;
    bool running_ = false;
    std::chrono::nanoseconds interval_{0};
    std::optional<platform::DateTime> current_;  // of the record at which the feed stands
    std::optional<Point> anchor_;                // the last record that had a time
    Time lastDue_;                               // of the record taken last
    Time due_;
};

}  // namespace player
