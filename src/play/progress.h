#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/event_loop.h"
#include "platform/posix/standard_error.h"

namespace player {

/// How far a shop is.
struct Progress {
    std::int64_t tills = 0;
    std::int64_t playing = 0;
    std::int64_t waiting = 0;
    std::int64_t records = 0;
    std::optional<std::int64_t> total{};  ///< nothing where the feed has no end
    std::int64_t reconnections = 0;
};

/// The progress in one line; of several tills it says what they do. `lately` is the number of records a second.
[[nodiscard]] std::string ProgressText(const Progress& now, double lately, std::chrono::seconds elapsed);

/// Shows the progress on a terminal, in a line that is written anew every second.
class ProgressLine {
public:
    /// All that is given outlives the line.
    ProgressLine(platform::posix::StandardError& terminal, platform::EventLoop& loop,
                 std::function<Progress()> now);

    void Start();

    /// Takes the line away, so that something else can be printed in its place.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    void Show();

    platform::posix::StandardError& terminal_;
    std::function<Progress()> now_;
    std::unique_ptr<platform::Alarm> next_;
    Clock::time_point started_;
    Clock::time_point shown_;
    std::int64_t recordsShown_ = 0;
};

}  // namespace player
