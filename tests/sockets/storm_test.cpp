#include <chrono>

#include "sockets/winsock_fixture.h"

/// A handler that connects anew on every error makes no storm of attempts, events and records.
namespace platform::sockets {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kApart{500};

class StormTest : public WinsockTest {
protected:
    StormTest()
    {
        socket.OnError = [this](int, const std::string&) {
            errors.push_back(Clock::now());
            EXPECT_EQ(socket.State(), SocketState::kError);
            socket.Close();
            socket.Connect();
        };
        socket.SetRemoteHost("127.0.0.1");
    }

    [[nodiscard]] bool ErrorsCome(std::size_t count)
    {
        return loop.WaitFor([&] { return errors.size() == count; });
    }

    void ExpectErrorsApart() const
    {
        for (std::size_t i = 1; i < errors.size(); ++i)
            EXPECT_GE(errors[i] - errors[i - 1], kApart);
    }

    std::vector<Clock::time_point> errors;
};

TEST_F(StormTest, ErrorsComeHalfASecondApartWhileTheStateTellsOfEachAtOnce)
{
    socket.SetRemotePort(Peer::Datagrams(loop).Port());
    socket.Connect();
    EXPECT_EQ(socket.State(), SocketState::kConnecting);
    EXPECT_TRUE(loop.ComesToRest());
    EXPECT_EQ(errors.size(), 1) << "the first one is not held back, the second one is";
    EXPECT_EQ(socket.State(), SocketState::kError);
    EXPECT_TRUE(ErrorsCome(3));
    ExpectErrorsApart();
}

TEST_F(StormTest, AReceiverThatAppearsIsConnectedAfterOneMoreError)
{
    const Peer nobody = Peer::Datagrams(loop);
    socket.SetRemotePort(nobody.Port());
    socket.Connect();
    EXPECT_TRUE(loop.ComesToRest());
    Peer listener = Peer::Listening(loop, "127.0.0.1", nobody.Port());
    EXPECT_TRUE(Happens("connect"));
    EXPECT_EQ(errors.size(), 2);
}

TEST_F(StormTest, APeerThatAcceptsAndResetsIsTheSameStorm)
{
    Peer listener = Peer::Listening(loop);
    socket.SetRemotePort(listener.Port());
    socket.OnConnect = [&] {
        events.emplace_back("connect");
        listener.Accepted().Reset();
    };
    socket.Connect();
    EXPECT_TRUE(ErrorsCome(3));
    ExpectErrorsApart();
    EXPECT_TRUE(loop.ComesToRest());
    EXPECT_EQ(events.size(), 4) << "a connection is held back";
}

TEST_F(StormTest, CloseTakesAHeldErrorAwayButNotThePace)
{
    const Peer nobody = Peer::Datagrams(loop);
    socket.SetRemotePort(nobody.Port());
    socket.Connect();
    EXPECT_TRUE(loop.ComesToRest());
    socket.Close();
    socket.Connect();
    EXPECT_TRUE(loop.ComesToRest());
    EXPECT_EQ(errors.size(), 1) << "the next one is held back as well";
    socket.Close();
    const auto later = errors[0] + kApart + kApart / 10;
    EXPECT_TRUE(loop.WaitFor([&] { return Clock::now() > later; }));
    EXPECT_EQ(errors.size(), 1) << "no event comes after Close";
}

}  // namespace
}  // namespace platform::sockets
