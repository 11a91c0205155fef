#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace record {

/// By which signs a stream is cut into records. Where several are set, the first that is met ends the record.
struct CutRule {
    static constexpr std::size_t kLongestRecord = std::size_t{16} << 20;

    /// The bytes that end a record and belong to it; empty for none.
    std::string endsWith = {};

    /// A record ends with the byte 0x01, its time and the byte 0x02. None of them belongs to its text.
    bool transferTime = false;

    /// A record ends when nothing has come for so long.
    std::optional<std::chrono::milliseconds> gap = {};

    /// A record that grows so long, in bytes, ends there.
    std::size_t longest = kLongestRecord;
};

/// Why a record ended where it did.
enum class RecordEnd {
    kMet,      ///< a sign of the rule was met
    kTooLong,  ///< the record had reached the longest length
    kCutOff,   ///< the stream ended before the sign came
};

/// A record as it came. The texts are the wire's bytes and live until the call returns that brings the record.
struct CutRecord {
    std::string_view text;
    std::optional<std::string_view> time;  ///< what stood between 0x01 and 0x02
    platform::DateTime arrived;            ///< when its first byte came
    RecordEnd end = RecordEnd::kMet;
};

/// Takes the transfer time off a record's end: what stands between the last 0x01 and an 0x02 at the very end.
void SplitTransferTime(CutRecord& record);

/// When bytes came: on the wall's clock for the recording, on the steady clock for the gap between records.
struct Arrival {
    platform::DateTime wall;
    std::chrono::steady_clock::time_point steady;
};

/// Cuts one sender's stream into records. The records do not depend on how the stream was cut into reads.
class RecordCutter {
public:
    using Keep = std::function<void(const CutRecord& record)>;

    RecordCutter(CutRule rule, Keep keep);

    /// Adds what was read, and brings each record that ends in it. Returns where in these bytes the first
    /// record begins; nothing where none does.
    std::optional<std::size_t> Add(std::string_view bytes, const Arrival& arrival);

    /// The moment at which the record under way ends if nothing comes before; nothing without such a moment.
    [[nodiscard]] std::optional<std::chrono::steady_clock::time_point> Deadline() const;

    /// Ends the record under way if its deadline has come.
    void EndIfDue(std::chrono::steady_clock::time_point now);

    /// The stream has ended: brings the record under way, if there is one.
    void Finish();

private:
    struct FirstRecord {
        std::size_t length;
        RecordEnd end;
    };

    [[nodiscard]] std::optional<FirstRecord> FindFirst(std::string_view bytes);
    [[nodiscard]] std::optional<std::size_t> LengthByEndText(std::string_view bytes);
    [[nodiscard]] std::optional<std::size_t> LengthByTransferTime(std::string_view bytes);
    void Bring(std::string_view bytes, RecordEnd end);

    CutRule rule_;
    Keep keep_;
    std::string underWay_;  // begins a record, and is shorter than the longest one
    platform::DateTime arrived_;
    std::chrono::steady_clock::time_point lastByte_;

    // Of the record under way:
    std::size_t searched_ = 0;  // its sign does not begin before this offset
    bool hasTimeMark_ = false;  // an 0x01 stands before that offset
};

}  // namespace record
