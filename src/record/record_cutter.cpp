#include "record/record_cutter.h"

#include <algorithm>
#include <utility>

namespace record {
namespace {

constexpr char kTimeBegins = '\x01';
constexpr char kTimeEnds = '\x02';

}  // namespace

void SplitTransferTime(CutRecord& record)
{
    const std::size_t mark = record.text.rfind(kTimeBegins);
    if (mark == std::string_view::npos || !record.text.ends_with(kTimeEnds))
        return;
    record.time = record.text.substr(mark + 1, record.text.size() - mark - 2);
    record.text = record.text.substr(0, mark);
}

RecordCutter::RecordCutter(CutRule rule, Keep keep) : rule_(std::move(rule)), keep_(std::move(keep)) {}

std::optional<std::size_t> RecordCutter::Add(std::string_view bytes, const Arrival& arrival)
{
    if (bytes.empty())
        return std::nullopt;
    EndIfDue(arrival.steady);
    lastByte_ = arrival.steady;
    const bool goesOn = !underWay_.empty();
    if (goesOn)
        underWay_ += bytes;
    else
        arrived_ = arrival.wall;

    // Only the rest of a record is copied, not the records that are whole in these bytes.
    std::string_view rest = goesOn ? underWay_ : bytes;
    std::optional<std::size_t> begin;
    if (!goesOn)
        begin = 0;
    while (const auto first = FindFirst(rest)) {
        Bring(rest.substr(0, first->length), first->end);
        rest.remove_prefix(first->length);
        arrived_ = arrival.wall;
        if (!begin && !rest.empty())
            begin = bytes.size() - rest.size();
    }
    if (goesOn)
        underWay_.erase(0, underWay_.size() - rest.size());
    else
        underWay_ = rest;
    return begin;
}

std::optional<std::chrono::steady_clock::time_point> RecordCutter::Deadline() const
{
    if (!rule_.gap || underWay_.empty())
        return std::nullopt;
    return lastByte_ + *rule_.gap;
}

void RecordCutter::EndIfDue(std::chrono::steady_clock::time_point now)
{
    if (const auto deadline = Deadline(); deadline && now >= *deadline)
        Bring(std::exchange(underWay_, {}), RecordEnd::kMet);
}

void RecordCutter::Finish()
{
    const bool waitsForSign = !rule_.endsWith.empty() || rule_.transferTime;
    if (!underWay_.empty())
        Bring(std::exchange(underWay_, {}), waitsForSign ? RecordEnd::kCutOff : RecordEnd::kMet);
}

std::optional<RecordCutter::FirstRecord> RecordCutter::FindFirst(std::string_view bytes)
{
    const std::string_view within = bytes.substr(0, rule_.longest);
    std::optional<std::size_t> length;
    if (!rule_.endsWith.empty())
        length = LengthByEndText(within);
    else if (rule_.transferTime)
        length = LengthByTransferTime(within);
    if (length)
        return FirstRecord{*length, RecordEnd::kMet};
    if (within.size() == rule_.longest)
        return FirstRecord{rule_.longest, RecordEnd::kTooLong};
    return std::nullopt;
}

std::optional<std::size_t> RecordCutter::LengthByEndText(std::string_view bytes)
{
    const std::size_t found = bytes.find(rule_.endsWith, searched_);
    if (found != std::string_view::npos)
        return found + rule_.endsWith.size();
    // The end text may have begun in the last bytes.
    searched_ = bytes.size() - std::min(bytes.size(), rule_.endsWith.size() - 1);
    return std::nullopt;
}

/// The time begins at the last 0x01 before an 0x02. Each byte is looked at once, whatever the bytes are.
std::optional<std::size_t> RecordCutter::LengthByTransferTime(std::string_view bytes)
{
    while (searched_ < bytes.size()) {
        const std::size_t stop = std::min(bytes.find(kTimeEnds, searched_), bytes.size());
        hasTimeMark_ = hasTimeMark_ ||
                       bytes.substr(searched_, stop - searched_).find(kTimeBegins) != std::string_view::npos;
        searched_ = std::min(stop + 1, bytes.size());
        if (stop < bytes.size() && hasTimeMark_)
            return searched_;
    }
    return std::nullopt;
}

void RecordCutter::Bring(std::string_view bytes, RecordEnd end)
{
    CutRecord record{.text = bytes, .time = std::nullopt, .arrived = arrived_, .end = end};
    if (rule_.transferTime && end == RecordEnd::kMet)
        SplitTransferTime(record);
    searched_ = 0;
    hasTimeMark_ = false;
    keep_(record);
}

}  // namespace record
