#include <sys/socket.h>

#include <atomic>
#include <thread>

#include "sockets/winsock_fixture.h"

namespace platform::sockets {
namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;
constexpr int kMostRecords = 4000;  // four times what may wait

class TcpFlowTest : public WinsockTest {
protected:
    /// Sends records, each different, until one is refused; gives what was accepted.
    std::string SendUntilRefused()
    {
        const std::string filling(64000, '.');
        std::string accepted;
        for (int record = 0; record < kMostRecords; ++record) {
            const std::string text = std::to_string(record) + filling;
            const Failure refusal = ThrownBy([&] { socket.SendData(text); });
            if (refusal.Number() != 0) {
                EXPECT_EQ(failure::kSocketWouldBlock, refusal.Number());
                EXPECT_EQ("Cannot send the record: the receiver takes no more at the moment",
                          refusal.Description());
                return accepted;
            }
            accepted += text;
        }
        ADD_FAILURE() << "no record is refused";
        return accepted;
    }
};

TEST_F(TcpFlowTest, CloseStillHandsOverWhatWasAcceptedToASlowPeerThatTalks)
{
    constexpr int kMostSteps = 1000;
    Peer peer = ConnectedPeer();
    const std::string accepted = SendUntilRefused();
    peer.Send("never read");
    socket.Close();
    EXPECT_EQ(WinsockControl::kClosed, socket.State());
    std::string taken;
    for (int step = 0; step < kMostSteps && taken.size() < accepted.size(); ++step) {
        EXPECT_TRUE(loop.ComesToRest());  // the system's buffers are full again before each read
        if (step < kMostSteps / 100)
            peer.Send("this must not reset the connection");
        taken += peer.Receive(1);
    }
    EXPECT_TRUE(taken + peer.ReceiveAll() == accepted);
    EXPECT_EQ(Events{}, events);
}

TEST_F(TcpFlowTest, TheLimitHoldsForClosedConnectionsAndTheNextOneTogether)
{
    Peer former = ConnectedPeer();
    EXPECT_GE(SendUntilRefused().size(), 64 * kMegabyte);
    socket.Close();
    Peer peer = ConnectedPeer();
    socket.SendData("a peer that reads is served");
    EXPECT_EQ("a peer that reads is served", peer.Receive(27));
    const std::string accepted = SendUntilRefused();
    EXPECT_LE(accepted.size(), 40 * kMegabyte);

    former.Reset();
    EXPECT_TRUE(peer.Receive(accepted.size()) == accepted);
    EXPECT_GE(SendUntilRefused().size(), 64 * kMegabyte);
}

TEST_F(TcpFlowTest, AFloodIsTakenInBoundedPiecesBetweenWhichTheLoopGoesOn)
{
    constexpr std::size_t kFlood = 512 * kMegabyte;
    constexpr int kRecords = 1000;
    Peer listening = Peer::Listening(noLoop);  // the loop runs elsewhere while the peer waits
    socket.Connect("127.0.0.1", listening.PortText());
    ASSERT_TRUE(Happens("connect"));
    Peer peer = listening.Accepted();

    std::size_t passes = 0;
    std::size_t most = 0;
    socket.OnDataArrival = [&](std::size_t bytes) { most = std::max(most, bytes); };  // and never takes it
    std::unique_ptr<Alarm> everyPass;
    everyPass = loop.loop.NewAlarm([&] {
        if (passes++ < kRecords)
            socket.SendData("0123456789");
        everyPass->Set({});  // long past: the next pass
    });
    everyPass->Set({});

    std::thread flood([&] {
        const std::string bytes(kMegabyte, 'x');
        for (std::size_t sent = 0; sent < kFlood; sent += bytes.size())
            peer.Send(bytes);
        peer.EndSending();
    });
    EXPECT_TRUE(Happens("close"));
    flood.join();
    EXPECT_LE(most, kMegabyte);
    EXPECT_GT(passes, kRecords);
    EXPECT_EQ(kRecords * 10, peer.ReceiveAll().size());
}

}  // namespace
}  // namespace platform::sockets
