#include "platform/sockets/tcp_opening.h"
#include "sockets/winsock_fixture.h"
#include "support/fresh_network.h"

namespace platform::sockets {
namespace {

class TcpClientTest : public WinsockTest {};

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

TEST_F(TcpClientTest, APeerThatLeavesIsOneEventWhateverSendingMeetsFirst)
{
    const auto lastWords = [](Peer& peer) {
        peer.Send("last");
        peer.Close();
    };
    const std::tuple<std::function<void(Peer&)>, std::vector<int>, Events> cases[] = {
        {lastWords, {}, {"data last", "close"}},
        {&Peer::Close, {0, failure::kConnectionAborted}, {"close"}},
        {&Peer::Reset, {failure::kConnectionReset}, {"error 10054"}}};
    for (const auto& [leave, sending, expected] : cases) {
        Peer peer = ConnectedPeer();
        leave(peer);
        for (const int number : sending)
            EXPECT_EQ(FailureOf([&] { socket.SendData("record"); }), number);
        EXPECT_TRUE(Happens(expected.back()));
        EXPECT_EQ(events, expected);
    }
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
