#include "platform/qt/timer.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>

#include "platform/failure.h"
#include "platform/failure_numbers.h"
#include "platform/qt/event_queue.h"

namespace platform::qt {
namespace {

class TimerTest : public testing::Test {
protected:
    TimerTest()
    {
        timer.OnTimer = [this] {
            ++ticks;
            if (onTick)
                onTick();
        };
    }

    void Start(int interval)
    {
        timer.SetInterval(interval);
        timer.SetEnabled(true);
    }

    bool WaitForTicks(int count)
    {
        return QTest::qWaitFor([&] { return ticks >= count; });
    }

    EventGate gate;
    Timer timer{gate};
    int ticks = 0;
    std::function<void()> onTick;
};

TEST_F(TimerTest, KeepsItsIntervalWhereANegativeOneIsRefused)
{
    Start(1);
    EXPECT_THROW(timer.SetInterval(-5), Failure);
    EXPECT_TRUE(WaitForTicks(3));
}

TEST_F(TimerTest, DropsWhatIsDueWhenDisabledOrGivenAnotherInterval)
{
    const std::function<void()> stops[] = {[this] { timer.SetEnabled(false); },
                                           [this] { timer.SetInterval(0); }};
    for (const auto& stop : stops) {
        timer.SetEnabled(false);
        Start(1);
        ticks = 0;
        QTest::qSleep(5);  // so that a tick is due
        stop();
        QTest::qWait(20);
        EXPECT_EQ(ticks, 0);
    }
}

TEST_F(TimerTest, DeliversLateTicksOneAPassOfTheEventLoop)
{
    Start(20);
    QTest::qSleep(70);  // three ticks are late
    for (int expected = 1; expected <= 3; ++expected) {
        QCoreApplication::processEvents();
        EXPECT_EQ(ticks, expected);
    }
}

TEST_F(TimerTest, WaitsQuietlyWhileAnotherHandlerRuns)
{
    Start(1);
    int passes = 0;
    gate.Enter([&] {
        const auto counting = QObject::connect(QAbstractEventDispatcher::instance(),
                                               &QAbstractEventDispatcher::awake, [&] { ++passes; });
        QEventLoop dialog;
        QTimer::singleShot(30, &dialog, &QEventLoop::quit);
        dialog.exec();
        QObject::disconnect(counting);
        EXPECT_EQ(ticks, 0);
    });
    EXPECT_EQ(ticks, 1) << "one tick waits at the gate, the others for the event loop";
    EXPECT_LT(passes, 25) << "the event loop spins";
    EXPECT_TRUE(WaitForTicks(10));
}

TEST_F(TimerTest, DropsWhatComesDueInThePauseOfATick)
{
    constexpr int kInterval = 30;
    constexpr int kDueInThePause = 3;
    EventQueue queue(gate, timer);
    onTick = [&] {
        if (ticks > 1)
            return;
        QTimer::singleShot(0, [&] { gate.Enter([] { QTest::qSleep(kDueInThePause * kInterval); }); });
        queue.ProcessPending();
    };
    QElapsedTimer sinceStart;
    sinceStart.start();
    Start(kInterval);
    ASSERT_TRUE(WaitForTicks(4));
    EXPECT_LE(ticks, sinceStart.elapsed() / kInterval - kDueInThePause);
}

TEST_F(TimerTest, NeverTicksInsideATickEvenWhenStartedAnewThere)
{
    EventQueue queue(gate, timer);
    onTick = [&] {
        if (ticks > 1)
            return;
        timer.SetInterval(1);
        QTest::qSleep(5);  // so that a tick is due
        queue.ProcessPending();
        EXPECT_EQ(ticks, 1);
    };
    Start(2);
    EXPECT_TRUE(WaitForTicks(3));
}

TEST_F(TimerTest, GoesOnAfterATickThatFailed)
{
    onTick = [] { throw Failure(failure::kInvalidCall, "A handler failed"); };
    Start(1);
    EXPECT_TRUE(WaitForTicks(2));
}

}  // namespace
}  // namespace platform::qt
