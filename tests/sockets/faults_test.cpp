#include <sys/resource.h>
#include <sys/syscall.h>

#include <cerrno>

#include "platform/sockets/multicast.h"
#include "sockets/winsock_fixture.h"
#include "support/failing_calls.h"

/// What becomes of a control when the system refuses its calls.
namespace platform::sockets {
namespace {

using FaultsTest = WinsockTest;

TEST_F(FaultsTest, ASendThatFailsInPassingIsMadeAgain)
{
    for (const int error : {ENOMEM, ENOBUFS, EINTR, EAGAIN}) {
        Peer peer = ConnectedPeer();
        // Alone the second record always fails, but it leaves in one piece with the third.
        WithFailingCall({.number = SYS_sendto, .error = error, .length = 6}, [&] {
            for (const char* record : {"one", "second", "third"}) {
                socket.SendData(record);
                EXPECT_TRUE(loop.ComesToRest()) << "no rest between two tries";
            }
            EXPECT_EQ(peer.Receive(14), "onesecondthird");
        });
        socket.SendData("last");
        EXPECT_EQ(peer.Receive(4), "last");
        EXPECT_EQ(events, Events{});
        socket.Close();
    }
}

TEST_F(FaultsTest, AnyOtherFailureOfASendIsALostConnection)
{
    const std::vector<std::pair<int, int>> cases = {{EPERM, failure::kSocketPermissionDenied},
                                                    {EIO, failure::kSocketInvalidArgument},
                                                    {EHOSTUNREACH, failure::kHostUnreachable},
                                                    {ETIMEDOUT, failure::kConnectionTimedOut},
                                                    {EPIPE, failure::kConnectionAborted}};
    for (const auto& [error, number] : cases) {
        Peer peer = ConnectedPeer();
        peer.Send("what has come before");
        WithFailingCall({.number = SYS_sendto, .error = error, .length = 6}, [&, number = number] {
            EXPECT_EQ(FailureOf([&] { socket.SendData("refuse"); }), number);
            EXPECT_EQ(FailureOf([&] { socket.SendData("and so is all after it"); }), number);
        });
        EXPECT_EQ(socket.State(), SocketState::kConnected) << "no event inside a call";
        EXPECT_TRUE(Happens("error " + std::to_string(number)));
        EXPECT_EQ(events.size(), 2);  // the data and the error
        EXPECT_EQ(stateInError, SocketState::kError);
    }
    EXPECT_EQ(lastError, "The connection is lost: the peer has closed the connection");
}

TEST_F(FaultsTest, AConnectionWhoseRoomCannotBeWatchedIsLost)
{
    Peer peer = ConnectedPeer();
    WithFailingCall({.number = SYS_epoll_ctl, .error = ENOSPC}, [&] {
        EXPECT_EQ(FailureOf([&] { socket.SendData(std::string(std::size_t{8} << 20, 'x')); }),
                  failure::kOutOfMemory);
    });
    EXPECT_TRUE(Happens("error " + std::to_string(failure::kNoBufferSpace)));
}

TEST_F(FaultsTest, AMessageNamesTheCauseAndNoNumberThatNobodyChose)
{
    WithFailingCall({.number = SYS_bind, .error = EACCES}, [&] {
        socket.SetProtocol(WinsockControl::Protocol::kUdp);
        EXPECT_EQ(ThrownBy([&] { socket.Connect("127.0.0.1", "5015"); }).Description(),
                  "Cannot open a local port: permission denied");
        EXPECT_EQ(ThrownBy([&] { socket.Bind("5015"); }).Description(),
                  "Cannot open local port 5015: permission denied");
    });
    socket.SetProtocol(WinsockControl::Protocol::kTcp);
    Peer peer = ConnectedPeer();
    WithFailingCall({.number = SYS_sendto, .error = EIO}, [&] {
        EXPECT_EQ(ThrownBy([&] { socket.SendData("record"); }).Description(),
                  "Cannot send the record: Input/output error");
    });
}

TEST_F(FaultsTest, ACallThatIsInterruptedForEverKeepsNoCoreBusy)
{
    Peer sender = Peer::Datagrams(loop);
    WithFailingCall({.number = SYS_recvfrom, .error = EINTR}, [&] {
        Peer peer = ConnectedPeer();
        peer.Send("data");
        EXPECT_TRUE(loop.ComesToRest()) << "reading from a connection";
        socket.Close();
        EXPECT_TRUE(loop.ComesToRest()) << "reading from one that lingers";
        socket.SetProtocol(WinsockControl::Protocol::kUdp);
        socket.Listen();
        sender.SendTo(socket.LocalPort(), "data");
        EXPECT_TRUE(loop.ComesToRest()) << "reading datagrams";
    });
    EXPECT_TRUE(Happens("data data"));
    socket.Close();
    socket.SetProtocol(WinsockControl::Protocol::kTcp);
    socket.Listen();
    const Peer peer = Peer::ConnectTo(loop, socket.LocalPort());
    WithFailingCall({.number = SYS_accept4, .error = EINTR},
                    [&] { EXPECT_TRUE(loop.ComesToRest()) << "accepting"; });
    EXPECT_TRUE(Happens("request"));
}

TEST_F(FaultsTest, WhatTheSystemRefusesAGroupIsAFailureOfTheCallAlone)
{
    Multicast group(gate, loop.loop);
    group.OnError = [this](int, const std::string&) { events.emplace_back("error of the group"); };
    WithFailingCall({.number = SYS_socket, .error = EAFNOSUPPORT}, [&] {
        constexpr int kAddressFamilyNotSupported = 10047;
        EXPECT_EQ(FailureOf([&] { group.OpenGroup("ff05::123", 5016); }), kAddressFamilyNotSupported);
        EXPECT_EQ(FailureOf([&] { group.SendToGroup({'x'}, "ff05::123", 5016); }),
                  kAddressFamilyNotSupported);
    });
    for (const auto& [error, number] :
         {std::pair(ENOMEM, failure::kNoBufferSpace), {EAGAIN, failure::kSocketWouldBlock}}) {
        WithFailingCall({.number = SYS_sendto, .error = error}, [&, number = number] {
            EXPECT_EQ(FailureOf([&] { group.SendToGroup({'x'}, "239.1.2.3", 5016); }), number);
        });
    }
    EXPECT_TRUE(loop.ComesToRest());
    EXPECT_EQ(events, Events{});
}

}  // namespace
}  // namespace platform::sockets
