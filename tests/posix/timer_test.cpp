#include "platform/posix/timer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/posix/epoll_loop.h"
#include "platform/posix/event_queue.h"
#include "platform/posix/tick_schedule.h"

namespace platform::posix {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

class TimerTest : public testing::Test {
protected:
    TimerTest()
    {
        timer.OnTimer = [this] {
            ++ticks;
            onTick();
        };
    }

    void Start(int interval)
    {
        timer.SetInterval(interval);
        timer.SetEnabled(true);
    }

    void RunFor(std::chrono::milliseconds time)
    {
        const auto end = SteadyClock::now() + time;
        const auto wake = loop.NewAlarm([] {});
        wake->Set(end);
        while (SteadyClock::now() < end) {
            loop.RunPass(Waiting::kYes);
            ++passes;
        }
    }

    bool WaitForTicks(int count)
    {
        const auto deadline = SteadyClock::now() + 5s;
        while (ticks < count && SteadyClock::now() < deadline)
            RunFor(1ms);
        return ticks >= count;
    }

    /// A stall of the whole thread.
    static void Stall(std::chrono::milliseconds time) { std::this_thread::sleep_for(time); }

    EventGate gate;
    EpollLoop loop;
    TickSchedule schedule;
    Timer timer{gate, loop, schedule};
    EventQueue queue{gate, timer, [this] { loop.RunPass(Waiting::kNo); }};
    int ticks = 0;
    int passes = 0;
    std::function<void()> onTick = [] {};
};

TEST_F(TimerTest, DropsWhatIsDueWhenDisabledOrGivenAnotherInterval)
{
    for (const bool disables : {true, false}) {
        Start(1);
        Stall(5ms);  // so that a tick is due
        if (disables)
            timer.SetEnabled(false);
        else
            timer.SetInterval(0);
        RunFor(20ms);
        EXPECT_EQ(ticks, 0) << disables;
    }
}

TEST_F(TimerTest, DeliversLateTicksOneAPassOfTheEventLoop)
{
    Start(20);
    Stall(70ms);  // three ticks are late
    for (int expected = 1; expected <= 3; ++expected) {
        loop.RunPass(Waiting::kNo);
        EXPECT_EQ(ticks, expected);
    }
}

TEST_F(TimerTest, WaitsQuietlyWhileAnotherHandlerRuns)
{
    Start(1);
    gate.Enter([&] {
        RunFor(30ms);  // as a modal dialog does
        EXPECT_EQ(ticks, 0);
    });
    EXPECT_EQ(ticks, 1) << "one tick waits at the gate, the others for the event loop";
    EXPECT_LT(passes, 5) << "the event loop spins";
    EXPECT_TRUE(WaitForTicks(10));
}

TEST_F(TimerTest, DropsWhatComesDueInThePauseOfATick)
{
    onTick = [&] {
        if (ticks > 1)
            return;
        loop.Post([&] { gate.Enter([] { Stall(3 * 30ms); }); });
        queue.ProcessPending();
    };
    const auto start = SteadyClock::now();
    Start(30);
    ASSERT_TRUE(WaitForTicks(4));
    EXPECT_LE(ticks, (SteadyClock::now() - start) / 30ms - 3);
}

TEST_F(TimerTest, NeverTicksInsideATickEvenWhenStartedAnewThere)
{
    onTick = [&] {
        if (ticks > 1)
            return;
        timer.SetInterval(1);
        Stall(5ms);  // so that a tick is due
        queue.ProcessPending();
        EXPECT_EQ(ticks, 1);
    };
    Start(2);
    EXPECT_TRUE(WaitForTicks(3));
}

}  // namespace
}  // namespace platform::posix
