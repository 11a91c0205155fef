#include "platform/window/loop_bridge.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <QDialog>
#include <QEventLoop>
#include <QTest>
#include <QTimer>

#include "platform/posix/epoll_loop.h"
#include "platform/posix/event_queue.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/tick_schedule.h"
#include "platform/posix/timer.h"

namespace platform::window {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// The program's event loop, with its passes counted.
class CountingLoop final : public EventLoop {
public:
    std::unique_ptr<Watch> Observe(int descriptor, Readiness readiness, std::function<void()> react) override
    {
        return loop_.Observe(descriptor, readiness, std::move(react));
    }
    std::unique_ptr<Alarm> NewAlarm(std::function<void()> react) override
    {
        return loop_.NewAlarm(std::move(react));
    }
    void Post(std::function<void()> action) override { loop_.Post(std::move(action)); }
    void RunPass(Waiting waiting) override
    {
        ++passes;
        loop_.RunPass(waiting);
    }
    int Descriptor() override { return loop_.Descriptor(); }

    int passes = 0;

private:
    posix::EpollLoop loop_;
};

/// From where a handler was called that then runs an event loop of its own, as Open File does.
enum class From { kQtsLoop, kOwnLoop };

class LoopBridgeTest : public testing::TestWithParam<From> {
protected:
    /// Runs the handler, called from where the parameter says, to its end.
    void Run(const std::function<void()>& handler)
    {
        bool ended = false;
        const auto run = [&] {
            handler();
            ended = true;
        };
        if (GetParam() == From::kQtsLoop)
            QTimer::singleShot(0, run);
        else
            loop.Post(run);
        ASSERT_TRUE(QTest::qWaitFor([&] { return ended; }));
    }

    /// The passes of the program's loop while a dialog is up for a tenth of a second.
    int PassesOfADialog()
    {
        const int before = loop.passes;
        QEventLoop dialog;
        QTimer::singleShot(100, &dialog, &QEventLoop::quit);
        dialog.exec();
        return loop.passes - before;
    }

    CountingLoop loop;
    LoopBridge bridge{loop};
    EventGate gate;
    posix::TickSchedule schedule;
    posix::Timer timer{gate, loop, schedule};
};

INSTANTIATE_TEST_SUITE_P(, LoopBridgeTest, testing::Values(From::kQtsLoop, From::kOwnLoop));

TEST_P(LoopBridgeTest, BringsEveryKindOfEventIntoAModalDialog)
{
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends), 0);
    const FileDescriptor near(ends[0]);
    const FileDescriptor far(ends[1]);
    Run([&] {
        QDialog dialog;
        std::string seen;
        const auto note = [&](const char* what) {
            seen += what;
            if (seen.size() == 3)
                dialog.accept();
        };
        const auto readable = loop.Observe(near.Number(), Readiness::kReadable, [&] {
            char byte = 0;
            EXPECT_EQ(::recv(near.Number(), &byte, 1, 0), 1);
            note("r");
        });
        const auto alarm = loop.NewAlarm([&] {
            EXPECT_EQ(::send(far.Number(), "x", 1, 0), 1);
            note("a");
        });
        loop.Post([&] {
            alarm->Set(Clock::now() + 1ms);
            note("p");
        });
        QTimer::singleShot(60s, &dialog, &QDialog::reject);
        EXPECT_EQ(dialog.exec(), QDialog::Accepted);
        EXPECT_EQ(seen, "par");
    });
}

TEST_P(LoopBridgeTest, LetsBothLoopsDoOnePassInAPause)
{
    Run([&] {
        std::string seen;
        loop.Post([&] {
            seen += "own ";
            loop.Post([&] { seen += "next"; });
        });
        QTimer::singleShot(0, [&] { seen += "Qt's "; });
        const int before = loop.passes;
        bridge.RunPass();
        EXPECT_EQ(loop.passes, before + 1);
        EXPECT_TRUE(seen == "own Qt's " || seen == "Qt's own ") << seen;
        EXPECT_TRUE(QTest::qWaitFor([&] { return seen.ends_with("next"); }));
    });
}

/// As while Open File is up: ticks that come due wait for the end of its handler.
TEST_P(LoopBridgeTest, RestsWhileTheGateIsBusy)
{
    timer.SetInterval(1);
    int ticks = 0;
    timer.OnTimer = [&] { ++ticks; };
    Run([&] {
        gate.Enter([&] {
            timer.SetEnabled(true);
            EXPECT_LE(PassesOfADialog(), 3) << "one tick, and what it takes to see that there is no other";
            EXPECT_EQ(ticks, 0);
        });
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks > 2; })) << "goes on afterwards";
}

/// A click on Open File that comes in a tick's pause is handled there, while the tick has not ended.
TEST_P(LoopBridgeTest, RestsInADialogThatATicksPauseLetsIn)
{
    posix::EventQueue events(gate, timer, [&] { bridge.RunPass(); });
    int ticks = 0;
    int passes = 0;
    timer.OnTimer = [&] {
        if (++ticks > 1)
            return;
        QTimer::singleShot(0, [&] { gate.Enter([&] { passes = PassesOfADialog(); }); });
        events.ProcessPending();
    };
    timer.SetInterval(1);
    timer.SetEnabled(true);
    EXPECT_TRUE(QTest::qWaitFor([&] { return ticks > 2; }));
    EXPECT_LE(passes, 3);
}

}  // namespace
}  // namespace platform::window
