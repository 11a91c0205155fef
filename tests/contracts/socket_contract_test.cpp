#include <gtest/gtest.h>

#include <functional>

#include "fakes/clock_and_formats.h"
#include "fakes/components.h"
#include "platform/event_gate.h"
#include "platform/failure.h"
#include "platform/posix/epoll_loop.h"
#include "platform/sockets/multicast.h"
#include "platform/sockets/winsock.h"
#include "support/failure_of.h"

namespace platform {
namespace {

using Protocol = WinsockControl::Protocol;

struct FakeSockets {
    fakes::Journal journal;
    fakes::Winsock winsock{journal, "WinsockConnect"};
    fakes::Multicast multicast{journal, "MCSockConnect"};
};

struct RealSockets {
    EventGate gate;
    fakes::PlainFormats formats;
    posix::EpollLoop loop;
    sockets::Winsock winsock{gate, loop, formats};
    sockets::Multicast multicast{gate, loop};
};

template <class Sockets>
class SocketContract : public testing::Test {
protected:
    void SetTarget(const std::string& host, std::int32_t port)
    {
        winsock.SetRemoteHost(host);
        winsock.SetRemotePort(port);
    }

    Sockets its;
    WinsockControl& winsock = its.winsock;
    MulticastControl& multicast = its.multicast;
};

using Kinds = testing::Types<FakeSockets, RealSockets>;
TYPED_TEST_SUITE(SocketContract, Kinds);

TYPED_TEST(SocketContract, EachOpeningHasItsState)
{
    auto& control = this->winsock;
    EXPECT_EQ(control.State(), SocketState::kClosed);
    this->SetTarget("127.0.0.1", 5015);
    const std::tuple<Protocol, std::function<void()>, SocketState> cases[] = {
        {Protocol::kTcp, [&] { control.Connect(); }, SocketState::kConnecting},
        {Protocol::kTcp, [&] { control.Connect("127.0.0.1", "5016"); }, SocketState::kConnecting},
        {Protocol::kTcp, [&] { control.Listen(); }, SocketState::kListening},
        {Protocol::kUdp, [&] { control.Connect(); }, SocketState::kConnected},
        {Protocol::kUdp, [&] { control.Connect("::1", "5016"); }, SocketState::kConnected},
        {Protocol::kUdp, [&] { control.Listen(); }, SocketState::kListening},
        {Protocol::kUdp, [&] { control.Bind("0"); }, SocketState::kOpen},
    };
    for (const auto& [protocol, open, state] : cases) {
        control.SetProtocol(protocol);
        open();
        EXPECT_EQ(control.State(), state);
        control.Close();
        control.Close();
        EXPECT_EQ(control.State(), SocketState::kClosed);
    }
}

TYPED_TEST(SocketContract, OnlyAClosedControlCanBeOpened)
{
    auto& control = this->winsock;
    const std::function<void()> openings[] = {
        [&] { control.Connect(); }, [&] { control.Connect("127.0.0.1", "5015"); },
        [&] { control.Listen(); },  [&] { control.Bind("0"); },
        [&] { control.Accept(1); }, [&] { control.SetProtocol(Protocol::kTcp); }};
    for (const Protocol protocol : {Protocol::kTcp, Protocol::kUdp}) {
        control.SetProtocol(protocol);
        control.Listen();
        for (const auto& open : openings)
            EXPECT_EQ(FailureOf(open), failure::kInvalidOperationAtCurrentState);
        EXPECT_EQ(control.State(), SocketState::kListening);
        control.Close();
    }
}

TYPED_TEST(SocketContract, AWrongTargetIsRefusedAndLeavesTheControlClosed)
{
    auto& control = this->winsock;
    const struct {
        const char* host;
        const char* port;
        int number;
    } cases[] = {{"", "5015", failure::kAddressNotAvailable},
                 {"127.0.0.1", "0", failure::kAddressNotAvailable},
                 {"127.0.0.1", "65536", failure::kInvalidPropertyValue},
                 {"127.0.0.1", "-1", failure::kInvalidPropertyValue},
                 {"127.0.0.1", "99999999999", failure::kOverflow},
                 {"127.0.0.1", "harbour", failure::kTypeMismatch}};
    for (const auto& wrong : cases) {
        EXPECT_EQ(FailureOf([&] { control.Connect(wrong.host, wrong.port); }), wrong.number)
            << wrong.host << " " << wrong.port;
        EXPECT_EQ(control.State(), SocketState::kClosed);
    }
    for (const std::int32_t port : {-1, 65536}) {
        EXPECT_EQ(FailureOf([&] { control.SetRemotePort(port); }), failure::kInvalidPropertyValue);
        EXPECT_EQ(FailureOf([&] { control.SetLocalPort(port); }), failure::kInvalidPropertyValue);
    }
    this->SetTarget("", 5015);
    EXPECT_EQ(FailureOf([&] { control.Connect(); }), failure::kAddressNotAvailable);
}

TYPED_TEST(SocketContract, SendingNeedsAPeer)
{
    auto& control = this->winsock;
    const auto send = [&] { control.SendData("record"); };
    EXPECT_EQ(FailureOf(send), failure::kWrongProtocolOrState);
    EXPECT_EQ(FailureOf([&] { control.Accept(1); }), failure::kWrongProtocolOrState);
    for (const Protocol protocol : {Protocol::kTcp, Protocol::kUdp}) {
        control.SetProtocol(protocol);
        control.Listen();
        EXPECT_EQ(FailureOf(send), failure::kWrongProtocolOrState);
        control.Close();
    }
    this->SetTarget("127.0.0.1", 5015);
    control.Connect();
    EXPECT_EQ(FailureOf(send), 0);
    control.Close();
    EXPECT_EQ(FailureOf(send), failure::kWrongProtocolOrState);
    control.Bind("0");
    EXPECT_EQ(FailureOf(send), 0) << "the target that was set counts";
}

TYPED_TEST(SocketContract, AGroupIsAnAddressOfAGroupAndAPort)
{
    const struct {
        const char* group;
        std::int32_t port;
        int number;
    } cases[] = {{"239.1.2.3", 5015, 0},
                 {"ff02::1234", 65535, 0},
                 {"127.0.0.1", 5015, failure::kInvalidPropertyValue},
                 {"240.0.0.1", 5015, failure::kInvalidPropertyValue},
                 {"::1", 5015, failure::kInvalidPropertyValue},
                 {"", 5015, failure::kInvalidPropertyValue},
                 {"239.1.2.3", 0, failure::kInvalidPropertyValue},
                 {"239.1.2.3", 65536, failure::kInvalidPropertyValue}};
    for (const auto& c : cases) {
        EXPECT_EQ(FailureOf([&] { this->multicast.OpenGroup(c.group, c.port); }), c.number) << c.group;
        EXPECT_EQ(FailureOf([&] { this->multicast.SendToGroup({65}, c.group, c.port); }), c.number)
            << c.group;
    }
}

TYPED_TEST(SocketContract, AClosedGroupTakesNoRecord)
{
    auto& group = this->multicast;
    const auto send = [&] { group.SendToGroup({65, 66}, "239.1.2.3", 5015); };
    EXPECT_EQ(FailureOf(send), 0) << "never opened: the control opens what it needs";
    group.CloseGroup();
    group.CloseGroup();
    EXPECT_EQ(FailureOf(send), failure::kWrongProtocolOrState);
    group.OpenGroup("239.1.2.3", 5015);
    EXPECT_EQ(FailureOf(send), 0);
}

}  // namespace
}  // namespace platform
