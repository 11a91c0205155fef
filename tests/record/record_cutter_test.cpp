#include "record/record_cutter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace record {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// A record as the tests compare it. The arrival is in milliseconds since the test's beginning.
struct Kept {
    std::string text;
    long long arrived = 0;
    RecordEnd end = RecordEnd::kMet;
    std::optional<std::string> time = std::nullopt;

    bool operator==(const Kept&) const = default;
};

Arrival At(long long moment)
{
    return {platform::DateTime(milliseconds(moment)), steady_clock::time_point(milliseconds(moment))};
}

/// Some bytes of a stream and when they came.
struct Read {
    std::string bytes;
    long long moment = 0;
};

std::vector<Kept> Cut(const CutRule& rule, const std::vector<Read>& reads)
{
    std::vector<Kept> kept;
    RecordCutter cutter(rule, [&](const CutRecord& record) {
        kept.push_back({std::string(record.text), record.arrived.time_since_epoch().count(), record.end});
        if (record.time)
            kept.back().time = *record.time;
    });
    for (const Read& read : reads)
        cutter.Add(read.bytes, At(read.moment));
    cutter.Finish();
    return kept;
}

TEST(RecordCutter, CutsAtAPauseOrWhereTheEndTextComesFirst)
{
    EXPECT_EQ(Cut({.gap = milliseconds(250)}, {{"a", 0}, {"b", 249}, {"c", 499}, {"d", 748}}),
              (std::vector<Kept>{{"ab", 0}, {"cd", 499}}));
    EXPECT_EQ(Cut({.endsWith = "\n", .gap = milliseconds(250)}, {{"a\nb", 0}, {"c", 300}, {"\n", 400}}),
              (std::vector<Kept>{{"a\n", 0}, {"b", 0}, {"c\n", 300}}));
}

/// What the rules without a gap mean, told byte by byte.
std::vector<Kept> ByteByByte(const CutRule& rule, const std::vector<Read>& reads)
{
    std::vector<Kept> kept;
    Kept record;
    const auto keep = [&](RecordEnd end) {
        record.end = end;
        kept.push_back(std::exchange(record, {}));
    };
    const auto add = [&](char byte, long long moment) {
        std::string& text = record.text;
        record.arrived = text.empty() ? moment : record.arrived;
        text += byte;
        const std::size_t mark = text.rfind('\x01');
        if (!rule.endsWith.empty() && text.ends_with(rule.endsWith)) {
            keep(RecordEnd::kMet);
        } else if (rule.transferTime && byte == '\x02' && mark != std::string::npos) {
            record.time = text.substr(mark + 1, text.size() - mark - 2);
            text.resize(mark);
            keep(RecordEnd::kMet);
        } else if (text.size() == rule.longest) {
            keep(RecordEnd::kTooLong);
        }
    };
    for (const Read& read : reads)
        for (const char byte : read.bytes)
            add(byte, read.moment);
    if (!record.text.empty())
        keep(RecordEnd::kCutOff);
    return kept;
}

using Random = std::mt19937;

std::size_t Below(Random& random, std::size_t limit)
{
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
}

std::vector<Read> RandomReads(Random& random, const std::string& stream)
{
    std::vector<Read> reads;
    for (std::size_t at = 0; at < stream.size(); at += reads.back().bytes.size())
        reads.push_back({stream.substr(at, 1 + Below(random, 20)), static_cast<long long>(at)});
    return reads;
}

TEST(RecordCutter, HowTheStreamIsReadChangesNoRecord)
{
    const CutRule rules[] = {{.endsWith = "\n", .longest = 40},
                             {.endsWith = "ab", .longest = 16},
                             {.endsWith = "aaba", .longest = 5},
                             {.transferTime = true, .longest = 40},
                             {.transferTime = true, .longest = 3}};
    const std::string alphabet("aab\n\x01\x02\0", 7);
    Random random(20260514);
    for (int round = 0; round < 2000; ++round) {
        std::string stream;
        for (std::size_t length = Below(random, 300); stream.size() < length;)
            stream += alphabet[Below(random, alphabet.size())];
        for (const CutRule& rule : rules) {
            const std::vector<Read> reads = RandomReads(random, stream);
            ASSERT_EQ(Cut(rule, reads), ByteByByte(rule, reads)) << rule.endsWith << ", round " << round;
        }
    }
}

}  // namespace
}  // namespace record
