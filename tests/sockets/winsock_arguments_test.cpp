#include "sockets/winsock_fixture.h"

namespace platform::sockets {
namespace {

class WinsockArgumentsTest : public WinsockTest {};

TEST_F(WinsockArgumentsTest, AWrongArgumentIsAFailureAndLeavesTheControlClosed)
{
    struct Case {
        const char* host;
        const char* port;
        int number;
    };
    const std::vector<Case> cases = {{"", "5015", failure::kAddressNotAvailable},
                                     {"   ", "5015", failure::kAddressNotAvailable},
                                     {"127.0.0.1", "0", failure::kAddressNotAvailable},
                                     {"127.0.0.1", "0.5", failure::kAddressNotAvailable},
                                     {"127.0.0.1", "65536", failure::kInvalidPropertyValue},
                                     {"127.0.0.1", "-1", failure::kInvalidPropertyValue},
                                     {"127.0.0.1", "99999999999", failure::kOverflow},
                                     {"127.0.0.1", "letters", failure::kTypeMismatch},
                                     {"127.0.0.1", "", failure::kTypeMismatch}};
    for (const auto protocol : {WinsockControl::Protocol::kTcp, WinsockControl::Protocol::kUdp}) {
        socket.SetProtocol(protocol);
        for (const Case& wrong : cases) {
            EXPECT_EQ(wrong.number, FailureOf([&] { socket.Connect(wrong.host, wrong.port); }))
                << wrong.host << ":" << wrong.port;
            EXPECT_EQ(WinsockControl::kClosed, socket.State());
        }
    }
    EXPECT_EQ(failure::kInvalidPropertyValue, FailureOf([&] { socket.Bind("65536"); }));
    EXPECT_EQ(failure::kInvalidPropertyValue, FailureOf([&] { socket.SetRemotePort(-1); }));
    EXPECT_EQ(failure::kInvalidPropertyValue, FailureOf([&] { socket.SetLocalPort(65536); }));
}

TEST_F(WinsockArgumentsTest, APortWithAFractionIsRoundedAsEverywhere)
{
    socket.SetProtocol(WinsockControl::Protocol::kUdp);
    socket.Bind("1.5");
    EXPECT_EQ(2, socket.LocalPort());
}

TEST_F(WinsockArgumentsTest, BlanksOfEveryKindAroundAHostAreDropped)
{
    Peer receiver = Peer::Datagrams(loop);
    socket.SetProtocol(WinsockControl::Protocol::kUdp);
    for (const char* blank : {" ", "\t", "\r\n", "\u00A0", "\u200B", "\u3000", "\uFEFF", " \u00A0\t "}) {
        socket.Connect(blank + std::string("127.0.0.1") + blank, receiver.PortText());
        EXPECT_EQ(socket.State(), WinsockControl::kConnected) << "a host to look up: " << blank;
        socket.Close();
        EXPECT_EQ(failure::kAddressNotAvailable, FailureOf([&] { socket.Connect(blank, "5015"); }));
    }
    EXPECT_EQ(WithoutBlanksAround(" M\u00FCller's till "), "M\u00FCller's till");
}

TEST_F(WinsockArgumentsTest, AControlThatIsNotClosedRefusesToOpenAgain)
{
    socket.SetRemoteHost("127.0.0.1");
    socket.SetRemotePort(5015);
    socket.Listen();
    const std::vector<std::function<void()>> calls = {
        [&] { socket.Connect(); }, [&] { socket.Connect("127.0.0.1", "5015"); },
        [&] { socket.Listen(); },  [&] { socket.Bind("0"); },
        [&] { socket.Accept(1); }, [&] { socket.SetProtocol(WinsockControl::Protocol::kUdp); }};
    for (const auto& call : calls) {
        EXPECT_EQ(failure::kInvalidOperationAtCurrentState, FailureOf(call));
        EXPECT_EQ(WinsockControl::kListening, socket.State());
    }
    socket.Close();
    socket.Close();
    EXPECT_EQ(failure::kWrongProtocolOrState, FailureOf([&] { socket.SendData("x"); }));
}

}  // namespace
}  // namespace platform::sockets
