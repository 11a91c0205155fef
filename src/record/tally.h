#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/date_time.h"

namespace record {

/// What was recorded, and what the user should know of it.
struct Tally {
    std::uint64_t records = 0;
    std::uint64_t bytes = 0;
    std::optional<platform::DateTime> last;  ///< when the last record's first byte came
    std::uint64_t tooLong = 0;               ///< records that were cut at the longest length
    std::uint64_t cutOff = 0;                ///< records whose sender went before their end came
    std::uint64_t withoutTime = 0;           ///< records that should have had a time and had none
    std::uint64_t unreadableTimes = 0;
    std::uint64_t lostDatagrams = 0;  ///< that the system dropped, because they came too fast
    std::uint64_t notPassedOn = 0;    ///< bytes that the receiver of a tap did not get
};

/// What the progress shows: "12 records, 2880 bytes, last 15:07:09 from 127.0.0.1 port 40312".
[[nodiscard]] std::string ProgressText(const Tally& tally, const std::string& sender);

/// What the user should know at the end: first what there is, then what is odd about it.
[[nodiscard]] std::vector<std::string> SummaryLines(const Tally& tally, const std::string& path);

}  // namespace record
