#include <sys/socket.h>

#include "platform/sockets/lingering_connections.h"
#include "platform/sockets/socket.h"
#include "sockets/winsock_fixture.h"

/// What a program learns of the bytes that it has handed over, and what a receiver does of those that are
/// thrown away.
namespace platform::sockets {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;
const std::string kMuch(8 * kMegabyte, 'x');  // more than the system's buffers hold

class DeliveryTest : public WinsockTest {
protected:
    DeliveryTest()
    {
        socket.OnDrained = [this] { events.emplace_back("drained"); };
        socket.OnFinished = [this] { events.emplace_back("finished"); };
        socket.OnLost = [this](const TcpProgress& progress) {
            events.emplace_back("lost");
            lost = progress;
        };
    }

    TcpProgress lost;
};

TEST_F(DeliveryTest, BytesThatWaitAreCountedUntilTheyAreHandedOver)
{
    Peer peer = ConnectedPeer();
    EXPECT_EQ(socket.WaitingBytes(), 0);
    socket.SendData(kMuch);
    socket.SendData("last");
    const std::size_t all = kMuch.size() + 4;
    EXPECT_GT(socket.WaitingBytes(), 0);
    EXPECT_LT(socket.WaitingBytes(), all);
    const TcpProgress progress = socket.Progress();
    EXPECT_EQ(progress.accepted, all);
    EXPECT_GT(progress.unsent, socket.WaitingBytes()) << "the system has not sent all that it took";
    EXPECT_GE(progress.unacknowledged, progress.unsent);
    EXPECT_TRUE(peer.Receive(all).ends_with("xlast"));
    EXPECT_TRUE(Happens("drained"));
    EXPECT_EQ(socket.WaitingBytes(), 0);
    EXPECT_TRUE(loop.WaitFor([&] { return socket.Progress().unacknowledged == 0; }));
    socket.SendData("nothing waits");
    EXPECT_TRUE(loop.ComesToRest());
    EXPECT_EQ(events, Events{"drained"});
}

TEST_F(DeliveryTest, FinishTellsWhenThePeersSystemHasEverything)
{
    EXPECT_EQ(FailureOf([&] { socket.Finish(); }), failure::kWrongProtocolOrState);
    for (const bool endsItself : {false, true}) {
        Peer peer = ConnectedPeer();
        socket.SendData(kMuch);
        socket.Finish();
        EXPECT_EQ(FailureOf([&] { socket.SendData("too late"); }), failure::kWrongProtocolOrState);
        if (endsItself)
            peer.EndSending();
        EXPECT_TRUE(loop.ComesToRest());
        EXPECT_EQ(events, Events{});
        EXPECT_EQ(socket.State(), SocketState::kConnected);
        EXPECT_TRUE(peer.ReceiveAll() == kMuch);
        EXPECT_TRUE(Happens("finished"));
        EXPECT_EQ(events, Events{"finished"});
        EXPECT_EQ(socket.State(), SocketState::kClosed);
    }
}

TEST_F(DeliveryTest, FinishEndsInALossWhereThePeerDoesNotTakeAll)
{
    for (const bool endsItself : {false, true}) {
        Peer peer = ConnectedPeer();
        socket.SendData(kMuch);
        socket.Finish();
        if (endsItself)
            peer.EndSending();
        EXPECT_TRUE(loop.ComesToRest());
        peer.Reset();
        EXPECT_TRUE(loop.WaitFor([&] { return events.size() == 2; }));
        EXPECT_EQ(events[0], "lost");
        EXPECT_EQ(lost.accepted, kMuch.size());
        EXPECT_GT(lost.unsent, 0);
        EXPECT_TRUE(lastError.ends_with(", " + std::to_string(lost.unsent) + " bytes had not gone out"))
            << lastError;
    }
}

TEST_F(DeliveryTest, ALossTellsWhatWasNotAcknowledged)
{
    Peer peer = ConnectedPeer();
    socket.SendData("arrives");
    EXPECT_TRUE(loop.WaitFor([&] { return socket.Progress().unacknowledged == 0; }));
    peer.Reset();
    EXPECT_TRUE(Happens("error 10054"));
    EXPECT_EQ(events, (Events{"lost", "error 10054"}));
    EXPECT_EQ(lost.accepted, 7);
    EXPECT_EQ(lost.unacknowledged, 0);
}

TEST_F(DeliveryTest, BytesThatAreThrownAwayEndInAReset)
{
    const auto whatAReceiverSees = [this](const std::string& record,
                                          const std::function<void(Winsock&)>& end) {
        auto program = std::make_unique<Winsock>(gate, loop.loop, formats);
        Peer listener = Peer::Listening(loop);
        program->Connect("127.0.0.1", listener.PortText());
        Peer peer = listener.Accepted();
        EXPECT_TRUE(loop.WaitFor([&] { return program->State() == SocketState::kConnected; }));
        program->SendData(record);
        end(*program);
        program.reset();
        const std::string all = peer.ReceiveAll();
        return all.substr(all.size() - 5);
    };
    const auto close = [](Winsock& program) { program.Close(); };
    const auto goAway = [](Winsock&) {};
    EXPECT_EQ(whatAReceiverSees(kMuch, goAway), "reset");
    EXPECT_EQ(whatAReceiverSees(kMuch, close), "reset");
    EXPECT_EQ(whatAReceiverSees("little", goAway), "ittle");
}

TEST_F(DeliveryTest, AConnectionThatLingersTooLongIsReset)
{
    Peer listener = Peer::Listening(loop);
    SocketAddress address = AddressFromText("127.0.0.1").value();
    address.SetPort(listener.Port());
    FileDescriptor connection = OpenSocket(AF_INET, SOCK_STREAM);
    ::connect(connection.Number(), address.Data(), address.Size());
    Peer peer = listener.Accepted();

    std::size_t waitingInAll = 0;
    LingeringConnections lingering(loop.loop, 10ms);
    auto stream = std::make_unique<TcpStream>(loop.loop, std::move(connection), waitingInAll);
    stream->Send(kMuch);
    lingering.Add(std::move(stream));
    EXPECT_TRUE(loop.WaitFor([&] { return waitingInAll == 0; }));
    EXPECT_TRUE(peer.ReceiveAll().ends_with("reset"));
}

}  // namespace
}  // namespace platform::sockets
