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
    std::optional<std::string> time;
    long long arrived = 0;
    RecordEnd end = RecordEnd::kMet;

    bool operator==(const Kept&) const = default;
};

void PrintTo(const Kept& kept, std::ostream* out)
{
    *out << testing::PrintToString(kept.text) << " time " << testing::PrintToString(kept.time) << " at "
         << kept.arrived << " end " << static_cast<int>(kept.end);
}

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
        kept.push_back({std::string(record.text),
                        record.time ? std::optional(std::string(*record.time)) : std::nullopt,
                        record.arrived.time_since_epoch().count(), record.end});
    });
    for (const Read& read : reads)
        cutter.Add(read.bytes, At(read.moment));
    cutter.Finish();
    return kept;
}

TEST(RecordCutter, CutsByEachRule)
{
    const CutRule lines{.endsWith = "\r\n"};
    const CutRule times{.transferTime = true};
    const CutRule gaps{.gap = milliseconds(250)};
    const CutRule linesOrGaps{.endsWith = "\n", .gap = milliseconds(250)};
    const struct {
        const char* what;
        CutRule rule;
        std::vector<Read> reads;
        std::vector<Kept> records;
    } cases[] = {
        {"nothing at all", lines, {{"", 1}}, {}},
        {"an end text over two reads belongs to the record",
         lines,
         {{"a\r", 1}, {"\nb\r\n\r\n", 2}},
         {{"a\r\n", {}, 1}, {"b\r\n", {}, 2}, {"\r\n", {}, 2}}},
        {"what lacks its end text is kept",
         lines,
         {{"a\r\nb\r", 1}},
         {{"a\r\n", {}, 1}, {"b\r", {}, 1, RecordEnd::kCutOff}}},
        {"end texts that overlap", {.endsWith = "aab"}, {{"aa", 1}, {"aab", 2}}, {{"aaaab", {}, 1}}},
        {"a time takes 0x01 and 0x02 with it",
         times,
         {{"A\n\x01"
           "10:20",
           1},
          {":30\x02"
           "B\x01\x02\x01\x02",
           2}},
         {{"A\n", "10:20:30", 1}, {"B", "", 2}, {"", "", 2}}},
        {"the time begins at the last 0x01; an 0x02 before is text",
         times,
         {{"\x02"
           "A\x01"
           "B\x01"
           "7",
           1},
          {"\x02"
           "C\x02",
           2}},
         {{"\x02"
           "A\x01"
           "B",
           "7", 1},
          {"C\x02", {}, 2, RecordEnd::kCutOff}}},
        {"a pause that is long enough ends a record",
         gaps,
         {{"a", 0}, {"b", 249}, {"c", 499}, {"d", 748}},
         {{"ab", {}, 0}, {"cd", {}, 499}}},
        {"the first sign that is met ends a record",
         linesOrGaps,
         {{"a\nb", 0}, {"c", 300}, {"\n", 400}},
         {{"a\n", {}, 0}, {"b", {}, 0}, {"c\n", {}, 300}}},
    };
    for (const auto& [what, rule, reads, records] : cases)
        EXPECT_EQ(Cut(rule, reads), records) << what;
}

TEST(RecordCutter, CutsARecordThatGrowsTooLong)
{
    CutRule rule{.endsWith = "\n", .longest = 4};
    EXPECT_EQ(Cut(rule, {{"abc\nabcd\nabc", 1}, {"d", 2}, {"efgh", 3}}),
              (std::vector<Kept>{{"abc\n", {}, 1},
                                 {"abcd", {}, 1, RecordEnd::kTooLong},
                                 {"\n", {}, 1},
                                 {"abcd", {}, 1, RecordEnd::kTooLong},
                                 {"efgh", {}, 3, RecordEnd::kTooLong}}));
    rule = {.transferTime = true, .longest = 4};
    EXPECT_EQ(Cut(rule, {{"a\x01"
                          "78\x02"
                          "b\x01"
                          "9\x02",
                          1}}),
              (std::vector<Kept>{{"a\x01"
                                  "78",
                                  {},
                                  1,
                                  RecordEnd::kTooLong},
                                 {"\x02"
                                  "b\x01"
                                  "9",
                                  {},
                                  1,
                                  RecordEnd::kTooLong},
                                 {"\x02", {}, 1, RecordEnd::kCutOff}}));
}

TEST(RecordCutter, TellsWhenThePauseWillHaveBeenLongEnough)
{
    std::vector<std::string> kept;
    RecordCutter cutter({.gap = milliseconds(250)},
                        [&](const CutRecord& record) { kept.emplace_back(record.text); });
    EXPECT_EQ(cutter.Deadline(), std::nullopt);
    cutter.Add("a", At(1000));
    EXPECT_EQ(cutter.Deadline(), At(1250).steady);
    cutter.EndIfDue(At(1249).steady);
    EXPECT_TRUE(kept.empty());
    cutter.EndIfDue(At(1250).steady);
    EXPECT_EQ(kept, std::vector<std::string>{"a"});
    EXPECT_EQ(cutter.Deadline(), std::nullopt);
}

TEST(RecordCutter, TellsWhereTheFirstRecordOfAReadBegins)
{
    RecordCutter cutter({.endsWith = "\n"}, [](const CutRecord&) {});
    EXPECT_EQ(cutter.Add("ab", At(1)), 0U);
    EXPECT_EQ(cutter.Add("cd", At(1)), std::nullopt);
    EXPECT_EQ(cutter.Add("e\nf\ng", At(1)), 2U);
    EXPECT_EQ(cutter.Add("h\n", At(1)), std::nullopt);
    EXPECT_EQ(cutter.Add("i", At(1)), 0U);
}

// What the rules mean, told byte by byte and without any reads.

std::vector<Kept> ByteByByte(const CutRule& rule, const std::string& stream)
{
    std::vector<Kept> kept;
    std::string text;
    const auto keep = [&](std::optional<std::string> time, RecordEnd end) {
        kept.push_back({std::exchange(text, ""), std::move(time), 0, end});
    };
    for (const char byte : stream) {
        text += byte;
        const std::size_t mark = text.rfind('\x01');
        if (!rule.endsWith.empty() && text.ends_with(rule.endsWith)) {
            keep({}, RecordEnd::kMet);
        } else if (rule.transferTime && byte == '\x02' && mark != std::string::npos) {
            const std::string time = text.substr(mark + 1, text.size() - mark - 2);
            text.resize(mark);
            keep(time, RecordEnd::kMet);
        } else if (text.size() == rule.longest) {
            keep({}, RecordEnd::kTooLong);
        }
    }
    if (!text.empty())
        keep({}, RecordEnd::kCutOff);
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
        reads.push_back({stream.substr(at, 1 + Below(random, 20)), 0});
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
        for (const CutRule& rule : rules)
            ASSERT_EQ(Cut(rule, RandomReads(random, stream)), ByteByByte(rule, stream))
                << "rule with " << rule.endsWith << ", round " << round;
    }
}

TEST(RecordCutter, PausesAloneDecideWhereNoOtherSignIsSet)
{
    const CutRule rule{.gap = milliseconds(250), .longest = 60};
    Random random(7);
    for (int round = 0; round < 2000; ++round) {
        std::vector<Read> reads;
        std::vector<Kept> expected;
        long long moment = 0;
        for (std::size_t bursts = 1 + Below(random, 8); bursts > 0; --bursts) {
            moment += 250 + static_cast<long long>(Below(random, 500));
            const std::string burst(1 + Below(random, 150), static_cast<char>('a' + bursts));
            for (std::size_t at = 0; at < burst.size(); at += rule.longest) {
                const std::string text = burst.substr(at, rule.longest);
                expected.push_back({text, {}, -1, text.size() == 60 ? RecordEnd::kTooLong : RecordEnd::kMet});
            }
            for (Read& read : RandomReads(random, burst))
                reads.push_back({read.bytes, moment += static_cast<long long>(Below(random, 250))});
        }
        std::vector<Kept> kept = Cut(rule, reads);
        for (Kept& record : kept)
            record.arrived = -1;
        ASSERT_EQ(kept, expected) << round;
    }
}

}  // namespace
}  // namespace record
