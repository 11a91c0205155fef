#include "sockets/winsock_fixture.h"

namespace platform::sockets {
namespace {

class TcpServerTest : public WinsockTest {
protected:
    std::uint16_t Listen()
    {
        socket.Listen();
        const std::uint16_t port = socket.LocalPort();
        socket.Close();
        socket.SetLocalPort(port);
        socket.Listen();  // by its number, as an operator has it
        return port;
    }
};

TEST_F(TcpServerTest, OtherPeersThatWaitAreRefusedAndLaterOnesToo)
{
    const std::uint16_t port = Listen();
    Peer first = Peer::ConnectTo(loop, port);
    Peer second = Peer::ConnectTo(loop, port);
    ASSERT_TRUE(Happens("request"));
    EXPECT_EQ("reset", second.ReceiveAll());
    EXPECT_TRUE(Peer::IsRefused(port));
    socket.SendData("record");
    EXPECT_EQ("record", first.Receive(6));
    EXPECT_EQ(Events{"request"}, events);
}

TEST_F(TcpServerTest, ARequestIsGoodOnlyInItsHandlerOnceTheListeningHasEnded)
{
    const std::uint16_t port = Listen();
    WinsockControl::RequestId ignored = 0;
    socket.OnConnectionRequest = [&](WinsockControl::RequestId request) {
        ignored = request;
        EXPECT_EQ(failure::kInvalidOperationAtCurrentState, FailureOf([&] { socket.Accept(request); }));
        socket.Close();
        EXPECT_EQ(failure::kWrongProtocolOrState, FailureOf([&] { socket.Accept(request + 1); }));
    };
    EXPECT_EQ("", Peer::ConnectTo(loop, port).ReceiveAll());
    EXPECT_EQ(failure::kWrongProtocolOrState, FailureOf([&] { socket.Accept(ignored); }));
}

TEST_F(TcpServerTest, APeerThatResetsBeforeItIsServedIsAnError)
{
    const std::uint16_t port = Listen();
    Peer::ConnectTo(loop, port).Reset();
    ASSERT_TRUE(Happens("error 10054"));
    EXPECT_EQ((Events{"request", "error 10054"}), events);
}

}  // namespace
}  // namespace platform::sockets
