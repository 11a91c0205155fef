#include "play/schedules.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "play/measured_schedule.h"
#include "play/recorded_schedule.h"

namespace {

using namespace std::chrono_literals;
using platform::DateTime;
using player::RecordedSchedule;
using player::Time;
using std::chrono::nanoseconds;

constexpr auto kInterval = 25ms;
const Time kStart = Time{} + 1h;

/// Recorded times in seconds: "-" where one is missing, with a "t" where it has no day.
std::vector<std::optional<DateTime>> Recorded(const std::string& times)
{
    const DateTime day = std::chrono::local_days{std::chrono::year{2005} / 3 / 12};
    std::vector<std::optional<DateTime>> recorded;
    std::istringstream words(times);
    for (std::string word; words >> word;) {
        if (word == "-")
            recorded.emplace_back();
        else if (word.starts_with('t'))
            recorded.emplace_back(platform::DayZero() + std::chrono::seconds(std::stoi(word.substr(1))));
        else
            recorded.emplace_back(day + std::chrono::seconds(std::stoi(word)));
    }
    return recorded;
}

/// When records with these recorded times go out, counted from the start, if each is taken so late.
std::vector<nanoseconds> Moments(const RecordedSchedule::Rhythm& rhythm,
                                 const std::vector<std::optional<DateTime>>& recorded,
                                 std::chrono::milliseconds late = 0ms)
{
    RecordedSchedule schedule(rhythm, {});
    schedule.NextRecord(recorded.front(), true);
    schedule.Start(kStart, kInterval);
    std::vector<nanoseconds> moments;
    for (std::size_t record = 1; record <= recorded.size(); ++record) {
        const Time due = schedule.NextDue().value();
        EXPECT_FALSE(schedule.TakeDue(due - 1ns));
        EXPECT_TRUE(schedule.TakeDue(due + late));
        moments.emplace_back(due - kStart);
        if (record < recorded.size())
            schedule.NextRecord(recorded[record], false);
    }
    return moments;
}

TEST(RecordedSchedule, PlaysTheGapsOfTheRecording)
{
    const std::tuple<const char*, RecordedSchedule::Rhythm, const char*, std::vector<nanoseconds>> cases[] = {
        {"plain", {}, "10 11 14", {0s, 1s, 4s}},
        {"equal times go at once", {}, "1 1 1 2", {0s, 0s, 0s, 1s}},
        {"three times as fast", {.speed = 3}, "0 1 2 3", {0s, 333333333ns, 666666666ns, 999999999ns}},
        {"an earlier time takes an interval and counts from then on", {}, "9 5 6", {0s, 25ms, 1025ms}},
        {"a missing time takes an interval, the rhythm goes on", {}, "9 - 10", {0s, 25ms, 1s}},
        {"no time at all", {}, "- - -", {0s, 25ms, 50ms}},
        {"the first has no time", {}, "- 5 6", {0s, 25ms, 1025ms}},
        {"a pause is shortened as it is played", {.speed = 2, .longestGap = 5s}, "0 8 3600", {0s, 4s, 9s}},
        {"one without a day follows none with", {}, "t5 6 7 t8", {0s, 25ms, 1025ms, 1050ms}},
        {"times without days follow each other", {}, "t5 t6", {0s, 1s}},
    };
    for (const auto& [what, rhythm, recorded, moments] : cases) {
        EXPECT_EQ(Moments(rhythm, Recorded(recorded)), moments) << what;
        EXPECT_EQ(Moments(rhythm, Recorded(recorded), 700ms), moments) << what << ", each late";
    }
}

TEST(RecordedSchedule, TheSeamOfALoopIsOneIntervalAndARestartBeginsWithTheCurrentRecord)
{
    RecordedSchedule schedule({}, {});
    schedule.NextRecord(Recorded("10").front(), true);
    schedule.Start(kStart, kInterval);
    ASSERT_TRUE(schedule.TakeDue(kStart));
    schedule.NextRecord(Recorded("20").front(), true);  // the first one again, though it is later
    EXPECT_EQ(schedule.NextDue(), kStart + kInterval);
    ASSERT_TRUE(schedule.TakeDue(kStart + kInterval));
    schedule.NextRecord(Recorded("50").front(), false);
    EXPECT_EQ(schedule.NextDue(), kStart + kInterval + 30s);

    schedule.Stop();
    EXPECT_EQ(schedule.NextDue(), std::nullopt);
    EXPECT_FALSE(schedule.TakeDue(kStart + 1h));
    schedule.Start(kStart + 2h, kInterval);
    EXPECT_EQ(schedule.NextDue(), kStart + 2h);
    ASSERT_TRUE(schedule.TakeDue(kStart + 2h));
    schedule.NextRecord(Recorded("51").front(), false);
    EXPECT_EQ(schedule.NextDue(), kStart + 2h + 1s);
}

TEST(RecordedSchedule, TicksThatMoveNothingKeepTheInterval)
{
    RecordedSchedule schedule({}, {});
    schedule.Start(kStart, kInterval);
    ASSERT_TRUE(schedule.TakeDue(kStart));
    EXPECT_EQ(schedule.NextDue(), kStart + kInterval);
}

TEST(PacedSchedule, TicksLieOnTheRasterOfTheShopWheneverATillBegins)
{
    const player::Phase phase{.origin = kStart, .share = 0.5};
    for (const auto& [begins, first] :
         {std::pair{0ms, 12500us}, {12ms, 12500us}, {13ms, 37500us}, {1000ms, 1012500us}}) {
        player::PacedSchedule schedule(phase);
        schedule.Start(kStart + begins, kInterval);
        EXPECT_EQ(schedule.NextDue(), kStart + first) << begins.count();
    }
    player::PacedSchedule alone({});
    alone.Start(kStart, kInterval);
    EXPECT_EQ(alone.NextDue(), kStart + kInterval);
}

TEST(MeasuredSchedule, MeasuresEachRecordAgainstItsMomentAndLetsTheEndComeAtOnce)
{
    bool atEnd = false;
    player::PacedSchedule ticks({});
    player::MeasuredSchedule schedule(ticks, [&] { return atEnd; });
    EXPECT_FALSE(schedule.TakeDue(kStart));
    schedule.Start(kStart, kInterval);
    EXPECT_FALSE(schedule.TakeDue(kStart + 24ms));
    EXPECT_TRUE(schedule.TakeDue(kStart + 26ms));
    EXPECT_TRUE(schedule.TakeDue(kStart + 80ms));
    atEnd = true;
    EXPECT_LE(schedule.NextDue().value(), kStart + 80ms);
    EXPECT_TRUE(schedule.TakeDue(kStart + 80ms));
    EXPECT_DOUBLE_EQ(schedule.Measured().Greatest(), 30);
    EXPECT_DOUBLE_EQ(schedule.Measured().Percentile(0.5), 1.007);  // a bucket's end
    EXPECT_EQ(schedule.Late(), 1);
    schedule.Stop();
    EXPECT_FALSE(schedule.TakeDue(kStart + 1h));
}

TEST(Lateness, KeepsEachValueToThreePercentAndTheGreatestExactly)
{
    for (const nanoseconds value : std::initializer_list<nanoseconds>{0ns, 1500ns, 63us, 64us, 65us, 127us,
                                                                      128us, 1ms, 123456us, 7s, 3h}) {
        player::Lateness lateness;
        lateness.Add(value);
        player::Lateness other;
        other.Add(100h);
        lateness.Add(other);
        const double exact = std::chrono::duration<double, std::milli>(value).count();
        EXPECT_NEAR(lateness.Percentile(0.5), exact, exact * 0.035 + 0.001) << exact;
        EXPECT_DOUBLE_EQ(lateness.Greatest(), 360'000'000);
    }
}

TEST(Lateness, TellsPercentiles)
{
    player::Lateness lateness;
    EXPECT_EQ(lateness.Percentile(0.99), 0);
    lateness.Add(-5ms);
    for (int i = 0; i < 98; ++i)
        lateness.Add(10us);
    lateness.Add(2s);
    EXPECT_DOUBLE_EQ(lateness.Percentile(0.01), 0);
    EXPECT_DOUBLE_EQ(lateness.Percentile(0.99), 0.01);
    EXPECT_DOUBLE_EQ(lateness.Percentile(1), 2000);
}

}  // namespace
