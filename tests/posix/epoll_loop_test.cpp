#include "platform/posix/epoll_loop.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "platform/failure.h"
#include "support/failing_calls.h"

namespace platform::posix {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class EpollLoopTest : public testing::Test {
protected:
    EpollLoopTest() { EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, pair_), 0); }
    ~EpollLoopTest() override
    {
        for (const int end : pair_)
            ::close(end);
    }

    std::function<void()> Note(const std::string& what)
    {
        return [this, what] { seen += what; };
    }

    std::unique_ptr<Alarm> AlarmAt(Clock::time_point moment, const std::string& what)
    {
        auto alarm = loop.NewAlarm(Note(what));
        alarm->Set(moment);
        return alarm;
    }

    /// What one pass did.
    std::string Pass(Waiting waiting = Waiting::kNo)
    {
        seen.clear();
        loop.RunPass(waiting);
        return seen;
    }

    void SendToNear() { EXPECT_EQ(::send(pair_[1], "x", 1, 0), 1); }

    /// What another event loop sees of this one.
    [[nodiscard]] bool IsReadable(std::chrono::milliseconds wait = 0ms)
    {
        pollfd self{.fd = loop.Descriptor(), .events = POLLIN, .revents = 0};
        return ::poll(&self, 1, static_cast<int>(wait.count())) == 1;
    }

    EpollLoop loop;
    int pair_[2] = {-1, -1};
    int& near = pair_[0];
    std::string seen;
};

TEST_F(EpollLoopTest, ReactsWhileADescriptorIsReadyAndWatched)
{
    const auto writable = loop.Observe(near, Readiness::kWritable, Note("w"));
    auto readable = loop.Observe(near, Readiness::kReadable, Note("r"));
    EXPECT_EQ(Pass(), "w");
    SendToNear();
    EXPECT_EQ(Pass(), "rw");
    writable->SetEnabled(false);
    EXPECT_EQ(Pass(), "r") << "still unread";
    readable->SetEnabled(false);
    EXPECT_EQ(Pass(), "");
    readable->SetEnabled(true);
    EXPECT_EQ(Pass(), "r");
    readable.reset();
    EXPECT_EQ(Pass(), "");
}

TEST_F(EpollLoopTest, ReactsToAHangUpOnlyWhileSomethingIsWatched)
{
    ::shutdown(near, SHUT_RDWR);
    const auto writable = loop.Observe(near, Readiness::kWritable, Note("w"));
    EXPECT_EQ(Pass(), "w");
    writable->SetEnabled(false);
    EXPECT_FALSE(IsReadable()) << "it would spin";
}

TEST_F(EpollLoopTest, RunsMomentsInTheirOrderAndEachOnce)
{
    const auto now = Clock::now();
    const auto later = AlarmAt(now - 1ms, "b");
    const auto earlier = AlarmAt(now, "a");
    const auto never = AlarmAt(now, "c");
    const auto future = AlarmAt(now + 1h, "d");
    earlier->Set(now - 2ms);
    never->Clear();
    EXPECT_EQ(Pass(), "ab");
    EXPECT_EQ(Pass(), "");
    future->Set(Clock::now() + 5ms);
    EXPECT_EQ(Pass(Waiting::kYes), "d");
    EXPECT_GE(Clock::now(), now + 5ms);
}

TEST_F(EpollLoopTest, RunsInTheNextPassWhatAPassMakesDue)
{
    const auto again = loop.NewAlarm(Note("a"));
    const auto first = loop.NewAlarm([&] {
        again->Set(Clock::now() - 1s);
        loop.Post([&] {
            seen += "p";
            loop.Post(Note("q"));
        });
    });
    first->Set(Clock::now());
    EXPECT_EQ(Pass(), "p") << "what a moment posts runs in the same pass";
    EXPECT_EQ(Pass(Waiting::kYes), "aq") << "without a wait";
}

TEST_F(EpollLoopTest, LetsAPassInsideAPassTakeWhatIsLeftOfIt)
{
    const auto now = Clock::now();
    const auto second = AlarmAt(now, "2");
    const auto first = loop.NewAlarm([&] {
        seen += "<";
        loop.RunPass(Waiting::kNo);
        seen += ">";
    });
    first->Set(now - 1ms);
    loop.Post(Note("p"));
    EXPECT_EQ(Pass(), "<2p>");
}

TEST_F(EpollLoopTest, TellsAFileNothingThatConcernsTheOneWhoseNumberItGot)
{
    const int again = ::eventfd(0, EFD_NONBLOCK);
    std::unique_ptr<Watch> writable;
    std::unique_ptr<Watch> readable;
    const auto replace = [&] {
        seen += "!";
        writable.reset();
        readable.reset();
        EXPECT_EQ(::dup2(again, near), near);
        writable = loop.Observe(near, Readiness::kWritable, Note("w"));
        readable = loop.Observe(near, Readiness::kReadable, Note("r"));
    };
    writable = loop.Observe(near, Readiness::kWritable, Note("old"));
    const auto watchAndReset = [&] { readable = loop.Observe(near, Readiness::kReadable, replace); };
    watchAndReset();
    ::shutdown(pair_[1], SHUT_RDWR);
    EXPECT_EQ(Pass(), "!") << "the file was replaced while its own event was told";
    EXPECT_EQ(Pass(), "w");

    loop.Post(replace);
    EXPECT_EQ(Pass(), "!") << "the file was replaced behind the look at what is ready";
    ::close(again);
}

TEST_F(EpollLoopTest, LetsAReactionDestroyWhatReacts)
{
    std::unique_ptr<Watch> watch;
    std::unique_ptr<Alarm> alarm;
    std::unique_ptr<Alarm> other;
    // Captures too long for the function object itself: touched after their end, the sanitizer sees it.
    const std::string mark(100, '.');
    watch = loop.Observe(near, Readiness::kReadable, [&, mark] {
        watch.reset();
        seen += mark.substr(0, 1);
    });
    alarm = loop.NewAlarm([&, mark] {
        alarm.reset();
        other.reset();
        seen += mark.substr(0, 1);
    });
    other = loop.NewAlarm(Note("destroyed before its turn"));
    alarm->Set(Clock::now() - 1ms);
    other->Set(Clock::now());
    SendToNear();
    EXPECT_EQ(Pass(), "..");
    EXPECT_EQ(Pass(), "");
}

TEST_F(EpollLoopTest, TellsAnotherEventLoopWhenAPassIsDue)
{
    EXPECT_FALSE(IsReadable());
    loop.Post(Note("p"));
    EXPECT_TRUE(IsReadable());
    EXPECT_EQ(Pass(), "p");
    EXPECT_FALSE(IsReadable());

    const auto alarm = AlarmAt(Clock::now(), "a");
    EXPECT_TRUE(IsReadable()) << "a moment that has passed";
    alarm->Clear();
    EXPECT_FALSE(IsReadable());
    alarm->Set(Clock::now() + 5ms);
    EXPECT_TRUE(IsReadable(1000ms));
    EXPECT_EQ(Pass(), "a");
    EXPECT_FALSE(IsReadable());

    auto watch = loop.Observe(near, Readiness::kReadable, Note("r"));
    SendToNear();
    EXPECT_TRUE(IsReadable());
    watch.reset();
    EXPECT_FALSE(IsReadable());
}

TEST_F(EpollLoopTest, RefusesWhatCannotBeWatchedAndGoesOn)
{
    EXPECT_THROW(static_cast<void>(loop.Observe(9999, Readiness::kReadable, Note("x"))), Failure);
    EXPECT_EQ(Pass(), "");
}

TEST_F(EpollLoopTest, NeitherSpinsNorLosesAMomentWhereTheSystemRefusesACall)
{
    constexpr int kMostPasses = 20;  // of 10 ms each
    const std::vector<std::pair<FailingCall, bool>> cases = {
        {{SYS_timerfd_settime, EINVAL}, false}, {{SYS_epoll_wait, EIO}, false},
        {{SYS_epoll_wait, EINTR}, false},       {{SYS_epoll_ctl, EPERM}, false},
        {{SYS_timerfd_settime, EINVAL}, true},  {{SYS_read, EIO, 8}, true}};
    SendToNear();
    for (const auto& [call, inAnotherLoop] : cases) {
        const auto watch = loop.Observe(near, Readiness::kReadable, [] {});
        const auto alarm = loop.NewAlarm(Note("a"));
        seen.clear();
        int passes = 0;
        WithFailingCall(call, [&, waits = !inAnotherLoop] {
            watch->SetEnabled(false);
            loop.Post([] {});
            alarm->Set(Clock::now() + 50ms);
            for (; seen.empty() && passes < kMostPasses; ++passes) {
                EXPECT_TRUE(waits || IsReadable(1000ms));
                loop.RunPass(waits ? Waiting::kYes : Waiting::kNo);
            }
        });
        EXPECT_EQ(seen, "a") << call.number;
        EXPECT_EQ(Pass(), "");
        EXPECT_FALSE(IsReadable()) << "what nobody wants is still registered";
    }
}

}  // namespace
}  // namespace platform::posix
