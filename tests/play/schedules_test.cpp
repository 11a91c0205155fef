#include "play/schedules.h"

#include <gtest/gtest.h>

#include <vector>

#include "play/measured_schedule.h"
#include "play/recorded_schedule.h"

namespace {

using namespace std::chrono_literals;
using platform::DateTime;
using player::RecordedSchedule;
using player::Time;

constexpr auto kInterval = 25ms;
const Time kStart = Time{} + 1h;

std::optional<DateTime> At(std::chrono::milliseconds sinceMidnight)
{
    return std::chrono::local_days{std::chrono::year{2005} / 3 / 12} + sinceMidnight;
}

std::optional<DateTime> WithoutDay(std::chrono::milliseconds sinceMidnight)
{
    return platform::DayZero() + sinceMidnight;
}

/// When records with these recorded times go out, counted from the start, if each is taken so late.
std::vector<std::chrono::nanoseconds> Moments(const RecordedSchedule::Rhythm& rhythm,
                                              const std::vector<std::optional<DateTime>>& recorded,
                                              std::chrono::milliseconds late = 0ms)
{
    RecordedSchedule schedule(rhythm, {});
    schedule.NextRecord(recorded.front(), true);
    schedule.Start(kStart, kInterval);
    std::vector<std::chrono::nanoseconds> moments;
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

using Expected = std::vector<std::chrono::nanoseconds>;

TEST(RecordedSchedule, PlaysTheGapsOfTheRecording)
{
    const auto none = std::nullopt;
    struct Case {
        const char* what;
        RecordedSchedule::Rhythm rhythm;
        std::vector<std::optional<DateTime>> recorded;
        Expected moments;
    };
    const std::vector<Case> cases = {
        {"plain", {}, {At(10s), At(11s), At(14s)}, {0s, 1s, 4s}},
        {"equal times go at once", {}, {At(1s), At(1s), At(1s), At(2s)}, {0s, 0s, 0s, 1s}},
        {"three times as fast",
         {.speed = 3},
         {At(0s), At(1s), At(2s), At(3s)},
         {0s, 333333333ns, 666666666ns, 999999999ns}},
        {"an earlier time takes an interval and counts from then on",
         {},
         {At(9s), At(5s), At(6s)},
         {0s, 25ms, 1025ms}},
        {"a missing time takes an interval, the rhythm goes on", {}, {At(9s), none, At(10s)}, {0s, 25ms, 1s}},
        {"no time at all", {}, {none, none, none}, {0s, 25ms, 50ms}},
        {"the first has no time", {}, {none, At(5s), At(6s)}, {0s, 25ms, 1025ms}},
        {"a pause is shortened as it is played",
         {.speed = 2, .longestGap = 5s},
         {At(0s), At(8s), At(3600s)},
         {0s, 4s, 9s}},
        {"a time without a day does not follow one with",
         {},
         {WithoutDay(5s), At(6s), At(7s), WithoutDay(8s)},
         {0s, 25ms, 1025ms, 1050ms}},
        {"times without days follow each other", {}, {WithoutDay(5s), WithoutDay(6s)}, {0s, 1s}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Moments(c.rhythm, c.recorded), c.moments) << c.what;
        EXPECT_EQ(Moments(c.rhythm, c.recorded, 700ms), c.moments) << c.what << ", each late";
    }
}

TEST(RecordedSchedule, DoesNotDriftOverADayAtAnySpeed)
{
    std::vector<std::optional<DateTime>> recorded;
    for (std::chrono::milliseconds time = 0ms; time <= 24h; time += 7001ms)
        recorded.push_back(At(time));
    const auto moments = Moments({.speed = 600}, recorded, 3ms);
    const std::chrono::nanoseconds exact =
        std::chrono::nanoseconds(*recorded.back() - *recorded.front()) / 600;
    EXPECT_LT(std::chrono::abs(moments.back() - exact), 100us);
}

TEST(RecordedSchedule, TheSeamOfALoopIsOneIntervalAndARestartBeginsWithTheCurrentRecord)
{
    RecordedSchedule schedule({}, {});
    schedule.NextRecord(At(10s), true);
    schedule.Start(kStart, kInterval);
    ASSERT_TRUE(schedule.TakeDue(kStart));
    schedule.NextRecord(At(20s), true);  // the first one again, though it is later
    EXPECT_EQ(schedule.NextDue(), kStart + kInterval);
    ASSERT_TRUE(schedule.TakeDue(kStart + kInterval));
    schedule.NextRecord(At(50s), false);
    EXPECT_EQ(schedule.NextDue(), kStart + kInterval + 30s);

    schedule.Stop();
    EXPECT_EQ(schedule.NextDue(), std::nullopt);
    EXPECT_FALSE(schedule.TakeDue(kStart + 1h));
    schedule.Start(kStart + 2h, kInterval);
    EXPECT_EQ(schedule.NextDue(), kStart + 2h);
    ASSERT_TRUE(schedule.TakeDue(kStart + 2h));
    schedule.NextRecord(At(51s), false);
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
    player::PacedSchedule almost({.origin = kStart, .share = 0.499});
    almost.Start(kStart, kInterval);
    EXPECT_EQ(almost.NextDue(), kStart + 12250us);
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
    for (const std::chrono::nanoseconds value : std::initializer_list<std::chrono::nanoseconds>{
             0ns, 1500ns, 63us, 64us, 65us, 127us, 128us, 1ms, 123456us, 7s, 3h}) {
        player::Lateness lateness;
        lateness.Add(value);
        lateness.Add(100h);
        const double exact = std::chrono::duration<double, std::milli>(value).count();
        EXPECT_NEAR(lateness.Percentile(0.5), exact, exact * 0.035 + 0.001) << exact;
        EXPECT_DOUBLE_EQ(lateness.Greatest(), 360'000'000);
    }
}

TEST(Lateness, TellsPercentilesOfAllThatWasAdded)
{
    player::Lateness one;
    player::Lateness other;
    EXPECT_EQ(one.Percentile(0.99), 0);
    for (int i = 0; i < 98; ++i)
        one.Add(10us);
    other.Add(-5ms);
    other.Add(2s);
    one.Add(other);
    EXPECT_DOUBLE_EQ(one.Percentile(0.01), 0);
    EXPECT_DOUBLE_EQ(one.Percentile(0.99), 0.01);
    EXPECT_DOUBLE_EQ(one.Percentile(1), 2000);
}

}  // namespace
