#include "platform/qt/tick_schedule.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace platform::qt {
namespace {

using std::chrono::milliseconds;

TickSchedule::Time At(int milliseconds_)
{
    return TickSchedule::Time{} + milliseconds(milliseconds_);
}

/// What happens to a schedule at a moment, in milliseconds.
struct Step {
    enum Kind { Start, Stop, Take, Pause } kind;
    int at;
    int argument = 0;  ///< The interval of a start; the end of a pause.
};

/// One "+" for each try that took a tick, "-" for each that did not.
std::string Outcome(const std::vector<Step>& steps, TickSchedule& schedule)
{
    std::string outcome;
    for (const auto& [kind, at, argument] : steps) {
        if (kind == Step::Start)
            schedule.Start(At(at), milliseconds(argument));
        else if (kind == Step::Stop)
            schedule.Stop();
        else if (kind == Step::Pause)
            schedule.DropBetween(At(at), At(argument));
        else
            outcome += schedule.TakeDue(At(at)) ? '+' : '-';
    }
    return outcome;
}

TEST(TickSchedule, DeliversCatchesUpAndDrops)
{
    using enum Step::Kind;
    struct Case {
        const char* what;
        std::vector<Step> steps;
        const char* outcome;
        int nextDue;
    };
    const Case cases[] = {
        {"nothing is due at the start", {{Start, 100, 10}, {Take, 100}, {Take, 109}}, "--", 110},
        {"a tick is taken once", {{Start, 100, 10}, {Take, 110}, {Take, 110}, {Take, 119}}, "+--", 120},
        {"a late tick does not move the later ones",
         {{Start, 0, 10}, {Take, 17}, {Take, 19}, {Take, 20}},
         "+-+",
         30},
        {"ticks of a short stall come late, one at a time",
         {{Start, 0, 10}, {Take, 35}, {Take, 35}, {Take, 35}, {Take, 35}},
         "+++-",
         40},
        {"a stall just short of the longest is made up", {{Start, 0, 1}, {Take, 250}, {Take, 250}}, "++", 3},
        {"the longest stall drops all that is due",
         {{Start, 0, 1}, {Take, 251}, {Take, 251}, {Take, 252}},
         "--+",
         253},
        {"what follows a long stall keeps the phase",
         {{Start, 5, 100}, {Take, 999}, {Take, 1004}, {Take, 1005}},
         "--+",
         1105},
        {"an interval longer than a stall is late, not lost",
         {{Start, 0, 1000}, {Take, 1249}, {Take, 2250}},
         "+-",
         3000},
        {"what comes due in a pause is dropped",
         {{Start, 0, 10}, {Take, 10}, {Pause, 12, 45}, {Take, 45}, {Take, 50}},
         "+-+",
         60},
        {"what was late before a pause still comes",
         {{Start, 0, 10}, {Take, 35}, {Pause, 35, 52}, {Take, 52}, {Take, 52}, {Take, 52}},
         "+++-",
         60},
        {"a tick due as a pause begins is late, one due as it ends is dropped",
         {{Start, 0, 10}, {Pause, 10, 20}, {Take, 21}, {Take, 21}},
         "+-",
         30},
        {"a phase begun within a pause is dropped up to its end",
         {{Start, 15, 10}, {Pause, 5, 40}, {Take, 44}, {Take, 45}},
         "-+",
         55},
        {"a new start forgets what was due",
         {{Start, 0, 10}, {Start, 35, 20}, {Take, 54}, {Take, 55}},
         "-+",
         75},
        {"a stop forgets what was due",
         {{Start, 0, 10}, {Stop, 35}, {Take, 35}, {Pause, 35, 50}, {Start, 50, 10}, {Take, 59}},
         "--",
         60},
    };
    for (const Case& each : cases) {
        TickSchedule schedule;
        EXPECT_EQ(Outcome(each.steps, schedule), each.outcome) << each.what;
        EXPECT_EQ(schedule.NextDue(), At(each.nextDue)) << each.what;
    }
}

}  // namespace
}  // namespace platform::qt
