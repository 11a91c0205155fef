#include "platform/sockets/tcp_opening.h"
#include "sockets/fresh_network.h"
#include "sockets/winsock_fixture.h"

namespace platform::sockets {
namespace {

class TcpClientTest : public WinsockTest {};

TEST_F(TcpClientTest, ConnectsFromTheEventLoopAndSendsTextAsAnsiBytes)
{
    Peer listening = Peer::Listening(loop);
    socket.SetRemoteHost(" 127.0.0.1 ");
    socket.SetRemotePort(listening.Port());
    socket.Connect();
    EXPECT_EQ(WinsockControl::kConnecting, socket.State());
    EXPECT_EQ(failure::kWrongProtocolOrState, FailureOf([&] { socket.SendData("early"); }));
    EXPECT_EQ(Events{}, events);

    Peer peer = listening.Accepted();
    ASSERT_TRUE(Happens("connect"));
    EXPECT_EQ(WinsockControl::kConnected, socket.State());
    socket.SendData("A€é中");
    socket.SendData("");
    socket.SendData("B");
    EXPECT_EQ("A\x80\xE9?B", peer.Receive(5));
}

TEST_F(TcpClientTest, ARefusedConnectionIsAnErrorAndLeavesTheControlInError)
{
    const std::string nobody = Peer::Datagrams(loop).PortText();
    socket.OnError = [&](int number, const std::string& description) {
        events.push_back(std::to_string(number) + " " + description);
    };
    socket.Connect("127.0.0.1", nobody);
    EXPECT_TRUE(Happens("10061 Cannot connect to 127.0.0.1 port " + nobody + ": the connection was refused"));
    EXPECT_EQ(WinsockControl::kError, socket.State());
    EXPECT_EQ(failure::kInvalidOperationAtCurrentState, FailureOf([&] { socket.Connect(); }));
    socket.Close();
    EXPECT_EQ(WinsockControl::kClosed, socket.State());
}

TEST_F(TcpClientTest, WhatTheNetworkRefusesAtOnceIsStillAnEvent)
{
    socket.Connect("255.255.255.255", "5015");
    EXPECT_EQ(Events{}, events);
    EXPECT_TRUE(loop.WaitFor([&] { return !events.empty(); }));
    EXPECT_EQ(WinsockControl::kError, stateInError);
}

TEST_F(TcpClientTest, TheAddressesOfAHostAreTriedInTurn)
{
    Peer listening = Peer::Listening(loop, "127.0.0.3");
    std::vector<SocketAddress> addresses;
    for (const char* text : {"::1", "127.0.0.2", "127.0.0.3"}) {
        addresses.push_back(AddressFromText(text).value());
        addresses.back().SetPort(listening.Port());
    }
    std::string reached;
    TcpConnector connector(
        gate, loop.loop, addresses,
        {.connected =
             [&](FileDescriptor connection) { reached = SocketAddress::OfPeer(connection.Number()).Host(); },
         .failed = [&](const std::error_code&, const SocketAddress&) { reached = "nobody"; }});
    connector.StartQuietly();
    EXPECT_TRUE(loop.WaitFor([&] { return !reached.empty(); }));
    EXPECT_EQ("127.0.0.3", reached);
}

TEST_F(TcpClientTest, AConnectionToAFreePortDoesNotMeetItself)
{
    const FreshNetwork network;
    FreshNetwork::BringLoopBackUp();
    FreshNetwork::Run("echo 40000 40000 > /proc/sys/net/ipv4/ip_local_port_range");
    socket.Connect("127.0.0.1", "40000");
    EXPECT_TRUE(Happens("error 10061"));
}

TEST_F(TcpClientTest, AnOrderlyEndRaisesTheLastDataAndThenClose)
{
    Peer peer = ConnectedPeer();
    peer.Send("last");
    peer.Close();
    EXPECT_TRUE(Happens("close"));
    EXPECT_EQ((Events{"data last", "close"}), events);
}

TEST_F(TcpClientTest, AResetThatSendingMeetsFirstIsStillOneError)
{
    Peer peer = ConnectedPeer();
    peer.Reset();
    EXPECT_EQ(failure::kConnectionReset, FailureOf([&] { socket.SendData("lost"); }));
    EXPECT_TRUE(Happens("error 10054"));
    EXPECT_EQ(Events{"error 10054"}, events);
}

TEST_F(TcpClientTest, SendingToAPeerThatHasGoneInOrderStillEndsInClose)
{
    Peer peer = ConnectedPeer();
    peer.Close();
    socket.SendData("answered with a reset");
    EXPECT_EQ(failure::kConnectionAborted, FailureOf([&] { socket.SendData("refused"); }));
    EXPECT_TRUE(Happens("close"));
    EXPECT_EQ(Events{"close"}, events);
}

TEST_F(TcpClientTest, NoEventComesAfterClose)
{
    Peer listening = Peer::Listening(loop);
    socket.Connect("127.0.0.1", listening.PortText());
    socket.Close();
    socket.Connect("127.0.0.1", Peer::Datagrams(loop).PortText());
    socket.Close();
    socket.Connect("255.255.255.255", "5015");
    socket.Close();
    for (const bool closes : {true, false}) {
        socket.Connect("no.such.host.invalid", "5015");
        if (closes)
            socket.Close();
    }
    EXPECT_TRUE(Happens("error 11001"));
    EXPECT_EQ(Events{"error 11001"}, events);

    Peer peer = ConnectedPeer();
    socket.OnDataArrival = [&](std::size_t) {
        events.emplace_back("data");
        socket.Close();
    };
    peer.Send("x");
    peer.Close();
    ASSERT_TRUE(Happens("data"));
    EXPECT_TRUE(loop.ComesToRest());
    EXPECT_EQ(Events{"data"}, events);
    EXPECT_EQ("", socket.GetData());
}

TEST_F(TcpClientTest, EventsWaitForARunningHandlerWithoutKeepingTheEventLoopBusy)
{
    Peer peer = ConnectedPeer();
    gate.Enter([&] {
        peer.Send("x");
        EXPECT_TRUE(loop.ComesToRest());
        EXPECT_EQ(Events{}, events);
    });
    EXPECT_EQ(Events{"data x"}, events);
    gate.Enter([&] {
        peer.Send("y");
        EXPECT_TRUE(loop.ComesToRest());
        socket.Close();
    });
    EXPECT_EQ(Events{"data x"}, events);
}

}  // namespace
}  // namespace platform::sockets
