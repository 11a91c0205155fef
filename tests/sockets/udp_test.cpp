#include "platform/sockets/multicast.h"
#include "sockets/winsock_fixture.h"
#include "support/fresh_network.h"

namespace platform::sockets {
namespace {

class UdpTest : public WinsockTest {
protected:
    UdpTest() { socket.SetProtocol(WinsockControl::Protocol::kUdp); }
};

TEST_F(UdpTest, ConnectOnlyRemembersTheTarget)
{
    for (const char* address : {"127.0.0.1", "::1"}) {
        Peer receiver = Peer::Datagrams(loop, address);
        socket.Connect(address, receiver.PortText());
        EXPECT_EQ(WinsockControl::kConnected, socket.State());
        socket.SendData("A€中");
        EXPECT_EQ("A\x80?", receiver.ReceiveDatagram());
        socket.SendData("");
        EXPECT_EQ("", receiver.ReceiveDatagram());
        socket.Close();
    }
    EXPECT_EQ(Events{}, events);
}

TEST_F(UdpTest, BlanksOfEveryKindAroundAHostAreDropped)
{
    Peer receiver = Peer::Datagrams(loop);
    for (const char* blank : {" ", "\t", "\r\n", "\u00A0", "\u200B", "\u3000", "\uFEFF", " \u00A0\t "}) {
        socket.Connect(blank + std::string("127.0.0.1") + blank, receiver.PortText());
        EXPECT_EQ(socket.State(), WinsockControl::kConnected) << "a host to look up: " << blank;
        socket.Close();
        EXPECT_EQ(failure::kAddressNotAvailable, FailureOf([&] { socket.Connect(blank, "5015"); }));
    }
    EXPECT_EQ(WithoutBlanksAround(" M\u00FCller's till "), "M\u00FCller's till");
}

TEST_F(UdpTest, AReceiverThatSaysHelloGetsTheFeed)
{
    socket.Listen();
    EXPECT_EQ(WinsockControl::kListening, socket.State());
    EXPECT_EQ(failure::kWrongProtocolOrState, FailureOf([&] { socket.SendData("to nobody"); }));
    for (const char* address : {"127.0.0.1", "::1"}) {
        Peer receiver = Peer::Datagrams(loop, address);
        receiver.SendTo(socket.LocalPort(), "hello", address);
        EXPECT_TRUE(Happens("data hello"));
        socket.SendData("record");
        EXPECT_EQ("record", receiver.ReceiveDatagram());
        socket.Close();
        socket.Listen();
        socket.SendData("the target outlasts Close");
        EXPECT_EQ("the target outlasts Close", receiver.ReceiveDatagram());
        events.clear();
    }
}

TEST_F(UdpTest, AStrangersDatagramDoesNotTurnTheFeedOfAClientRole)
{
    Peer receiver = Peer::Datagrams(loop);
    Peer stranger = Peer::Datagrams(loop);
    socket.Connect("127.0.0.1", receiver.PortText());
    stranger.SendTo(socket.LocalPort(), "");
    EXPECT_TRUE(Happens("data "));
    socket.SendData("record");
    EXPECT_EQ("record", receiver.ReceiveDatagram());
}

TEST_F(UdpTest, BindOpensTheLocalPortAndSharesItWithThoseWhoShare)
{
    const Peer sharing = Peer::Datagrams(loop, "0.0.0.0", 0, true);
    socket.Bind(sharing.PortText());
    EXPECT_EQ(WinsockControl::kOpen, socket.State());
    socket.Close();
    socket.Listen();
    EXPECT_EQ(sharing.Port(), socket.LocalPort());
    socket.Close();

    const Peer alone = Peer::Datagrams(loop, "0.0.0.0");
    EXPECT_EQ(failure::kAddressInUse, FailureOf([&] { socket.Bind(alone.PortText()); }));
    EXPECT_EQ(WinsockControl::kClosed, socket.State());
    socket.Bind("1.5");
    EXPECT_EQ(2, socket.LocalPort()) << "rounded as everywhere";
    socket.Close();
    socket.SetProtocol(WinsockControl::Protocol::kTcp);
    EXPECT_EQ(failure::kWrongProtocolOrState, FailureOf([&] { socket.Bind("0"); }));
}

TEST_F(UdpTest, OurOwnMulticastRecordsAreNoPeersData)
{
    Multicast multicast(gate, loop.loop);
    for (const char* group : {"239.1.2.3", "ff02::123"}) {
        Peer member = Peer::InGroup(loop, group);
        socket.Bind(member.PortText());
        multicast.SendToGroup({'x'}, group, member.Port());
        EXPECT_EQ("x", member.ReceiveDatagram());
        EXPECT_TRUE(loop.ComesToRest());
        EXPECT_EQ(Events{}, events) << group;
        socket.Close();
    }
}

TEST_F(UdpTest, ASocketThatWaitsForPeersNeverFeedsItself)
{
    const std::uint16_t port = Peer::Datagrams(loop, "0.0.0.0").Port();
    socket.SetLocalPort(port);
    socket.SetRemotePort(port);
    for (const char* own : {"127.0.0.1", "127.0.0.2", "::1", "0.0.0.0"}) {
        socket.SetRemoteHost(own);
        for (const bool binds : {false, true}) {
            binds ? socket.Bind(std::to_string(port)) : socket.Listen();
            EXPECT_EQ(failure::kWrongProtocolOrState, FailureOf([&] { socket.SendData("to itself"); }))
                << own;
            socket.Close();
        }
    }
    socket.SetRemoteHost("127.255.255.255");  // everybody, the socket itself included
    socket.SetRemotePort(port);
    socket.Listen();
    socket.SendData("record");
    EXPECT_TRUE(loop.ComesToRest());
    EXPECT_EQ(Events{}, events);
    Peer receiver = Peer::Datagrams(loop);
    receiver.SendTo(port, "hello");
    EXPECT_TRUE(Happens("data hello"));
    socket.SendData("record");
    EXPECT_EQ("record", receiver.ReceiveDatagram());
}

TEST_F(UdpTest, AFloodOfDatagramsIsTakenInBoundedPieces)
{
    constexpr int kDatagrams = 2000;
    std::size_t most = 0;
    socket.OnDataArrival = [&](std::size_t bytes) { most = std::max(most, bytes); };
    socket.Listen();
    Peer peer = Peer::Datagrams(loop);
    const std::string datagram(60000, 'x');
    for (int sent = 0; sent < kDatagrams; ++sent) {
        peer.SendTo(socket.LocalPort(), datagram);
        EXPECT_TRUE(sent % 3 != 0 || loop.ComesToRest());
    }
    EXPECT_GE(most, datagram.size());
    EXPECT_LE(most, std::size_t{1} << 20);
}

TEST_F(UdpTest, ANetworkThatIsDownRefusesTheRecordAlone)
{
    const FreshNetwork network;
    socket.Connect("127.0.0.1", "5015");
    EXPECT_EQ(failure::kNetworkUnreachable, FailureOf([&] { socket.SendData("lost"); }));
    FreshNetwork::BringLoopBackUp();
    Peer receiver = Peer::Datagrams(loop, "127.0.0.1", 5015);
    socket.SendData("record");
    EXPECT_EQ("record", receiver.ReceiveDatagram());
    EXPECT_EQ(Events{}, events);
}

}  // namespace
}  // namespace platform::sockets
