#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "play/lateness.h"

namespace bench {

inline constexpr std::uint16_t kPort = 5015;
inline constexpr std::size_t kRecordBytes = 240;

/// What a sender cost and how it did.
struct Run {
    double seconds = 0;  ///< of processor time
    double elapsed = 0;  ///< seconds
    std::int64_t records = 0;
    double p50 = 0;  ///< lateness in milliseconds
    double p99 = 0;
    double greatest = 0;
    long kilobytes = 0;  ///< greatest resident size
    int status = 0;      ///< exit status

    double middleTill =
        0;  ///< p99 of the tills whose settings file is named "first...": the middle one of them
    double worstTill = 0;  ///< and the greatest
};

/// How a shop is played: so many tills, each one record an interval.
struct Feed {
    int tills = 1;
    std::chrono::milliseconds interval{25};
    std::int64_t recordsEach = 0;
};

/// play_feed with these arguments; a report is added.
[[nodiscard]] Run RunPlayer(const std::string& folder, const std::string& arguments);

/// A loop with a periodic timer of the system for each till, spread over the interval, which sends records and does nothing
/// else.
[[nodiscard]] Run RunBareTimers(const Feed& feed);

/// A loop of send and nothing else.
[[nodiscard]] Run RunBareSends(std::int64_t records);

}  // namespace bench
