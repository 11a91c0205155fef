#include "platform/posix/tick_schedule.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace platform::posix {
namespace {

using std::chrono::milliseconds;

/// Moments and intervals are in milliseconds.
class TickScheduleTest : public testing::Test {
protected:
    static TickSchedule::Time At(int moment) { return TickSchedule::Time{} + milliseconds(moment); }

    void Start(int at, int interval) { schedule.Start(At(at), milliseconds(interval)); }
    void Pause(int from, int to) { schedule.DropBetween(At(from), At(to)); }

    /// Tries to take a tick at each moment: "+" for one that was taken, "-" for none; then when the next one
    /// is due.
    std::string Take(std::initializer_list<int> moments)
    {
        std::string outcome;
        for (const int moment : moments)
            outcome += schedule.TakeDue(At(moment)) ? '+' : '-';
        return outcome + " next " +
               (schedule.NextDue() ? std::to_string((*schedule.NextDue() - At(0)) / milliseconds(1))
                                   : "never");
    }

    TickSchedule schedule;
};

TEST_F(TickScheduleTest, TakesEachTickOnceHoweverLate)
{
    Start(100, 10);
    EXPECT_EQ(Take({100, 109, 110, 110, 119}), "--+-- next 120");
    EXPECT_EQ(Take({127, 129, 130}), "+-+ next 140") << "a late tick does not move the later ones";
    EXPECT_EQ(Take({165, 165, 165, 165}), "+++- next 170") << "ticks of a short stall come one at a time";
}

TEST_F(TickScheduleTest, TakesOneTickOfALongStallAndKeepsThePhase)
{
    Start(0, 1);
    EXPECT_EQ(Take({250, 250}), "++ next 3") << "just short of it";
    Start(0, 1);
    EXPECT_EQ(Take({251, 251, 252}), "+-+ next 253");
    Start(5, 100);
    EXPECT_EQ(Take({999, 1004, 1005}), "+-+ next 1105");
    Start(0, 3000);
    EXPECT_EQ(Take({3500, 5999, 6000}), "+-+ next 9000") << "an interval longer than the stall";
}

TEST_F(TickScheduleTest, DropsWhatComesDueInAPause)
{
    Start(0, 10);
    EXPECT_EQ(Take({10}), "+ next 20");
    Pause(12, 45);
    EXPECT_EQ(Take({45, 50}), "-+ next 60");
    EXPECT_EQ(Take({85}), "+ next 70");
    Pause(85, 102);
    EXPECT_EQ(Take({102, 102, 102}), "++- next 110") << "what was late before still comes";
    Pause(110, 120);
    EXPECT_EQ(Take({121, 121}), "+- next 130")
        << "one due as it begins is late, one due as it ends is dropped";
    Start(15, 10);
    Pause(5, 40);
    EXPECT_EQ(Take({44, 45}), "-+ next 55") << "a phase begun within it";
}

TEST_F(TickScheduleTest, ForgetsWhatWasDueAtAStartAndAStop)
{
    Start(0, 10);
    Start(35, 20);
    EXPECT_EQ(Take({54, 55}), "-+ next 75");
    schedule.Stop();
    EXPECT_EQ(Take({90}), "- next never");
    Pause(90, 100);
    Start(100, 10);
    EXPECT_EQ(Take({109}), "- next 110");
}

}  // namespace
}  // namespace platform::posix
