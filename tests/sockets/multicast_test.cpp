#include "platform/sockets/multicast.h"

#include "sockets/fresh_network.h"
#include "sockets/winsock_fixture.h"

namespace platform::sockets {
namespace {

const std::vector<std::uint8_t> kRecord = {'A', 0x80, 0};
const std::string kRecordText("A\x80\0", 3);
constexpr const char* kGroup = "239.1.2.3";
constexpr int kPort = 5016;

class MulticastTest : public testing::Test {
protected:
    MulticastTest()
    {
        control.OnError = [this](int number, const std::string&) { errors.push_back(number); };
    }

    EventGate gate;
    Multicast control{gate};
    std::vector<int> errors;
};

TEST_F(MulticastTest, EveryMemberOfTheGroupGetsTheRecordAsOneDatagram)
{
    for (const char* group : {kGroup, "ff02::123", "ff05::123"}) {
        Peer member = Peer::InGroup(group);
        Peer other = Peer::InGroup(group, member.Port());
        control.OpenGroup(' ' + std::string(group) + ' ', member.Port());
        control.SendToGroup(kRecord, group, member.Port());
        EXPECT_EQ(kRecordText, member.ReceiveDatagram()) << group;
        EXPECT_EQ(kRecordText, other.ReceiveDatagram()) << group;
    }
    EXPECT_EQ(std::vector<int>{}, errors);
}

TEST_F(MulticastTest, SendingOpensWhatItNeedsUntilTheGroupWasClosed)
{
    Peer member = Peer::InGroup(kGroup);
    control.SendToGroup(kRecord, kGroup, member.Port());
    EXPECT_EQ(kRecordText, member.ReceiveDatagram());
    control.CloseGroup();
    control.CloseGroup();
    EXPECT_EQ(failure::kWrongProtocolOrState,
              FailureOf([&] { control.SendToGroup(kRecord, kGroup, member.Port()); }));
    control.OpenGroup(kGroup, member.Port());
    control.SendToGroup(kRecord, kGroup, member.Port());
    EXPECT_EQ(kRecordText, member.ReceiveDatagram());
}

TEST_F(MulticastTest, AWrongArgumentIsAFailure)
{
    struct Case {
        const char* group;
        int port;
    };
    for (const Case& wrong :
         {Case{"", kPort}, Case{"127.0.0.1", kPort}, Case{"::1", kPort}, Case{"localhost", kPort},
          Case{"239.1. 2.3", kPort}, Case{kGroup, 0}, Case{kGroup, -1}, Case{kGroup, 65536}}) {
        EXPECT_EQ(failure::kInvalidPropertyValue,
                  FailureOf([&] { control.OpenGroup(wrong.group, wrong.port); }))
            << wrong.group;
        EXPECT_EQ(failure::kInvalidPropertyValue,
                  FailureOf([&] { control.SendToGroup(kRecord, wrong.group, wrong.port); }));
    }
    const std::vector<std::uint8_t> tooLong(65508);
    EXPECT_EQ(failure::kMessageTooLong, FailureOf([&] { control.SendToGroup(tooLong, kGroup, kPort); }));
}

TEST_F(MulticastTest, WithoutARouteTheLoopBackInterfaceCarriesTheRecord)
{
    const FreshNetwork network;
    FreshNetwork::BringLoopBackUp();
    Peer member = Peer::InGroup(kGroup);
    control.OpenGroup(kGroup, member.Port());
    control.SendToGroup(kRecord, kGroup, member.Port());
    EXPECT_EQ(kRecordText, member.ReceiveDatagram());
}

TEST_F(MulticastTest, WithoutARouteAnInterfaceThatCanMulticastIsPreferred)
{
    const FreshNetwork network;
    FreshNetwork::BringLoopBackUp();
    FreshNetwork::AddOutwardInterface();
    Peer member = Peer::InGroup(kGroup, 0, "outward");
    control.SendToGroup(kRecord, kGroup, member.Port());
    EXPECT_EQ(kRecordText, member.ReceiveDatagram());
}

TEST_F(MulticastTest, ARouteThatComesUpLaterIsTaken)
{
    const FreshNetwork network;
    FreshNetwork::BringLoopBackUp();
    control.OpenGroup(kGroup, kPort);
    control.SendToGroup(kRecord, kGroup, kPort);
    FreshNetwork::AddOutwardInterface();
    EXPECT_EQ(0, std::system("ip route add 224.0.0.0/4 dev outward"));
    Peer member = Peer::InGroup(kGroup, 0, "outward");
    control.SendToGroup(kRecord, kGroup, member.Port());
    EXPECT_EQ(kRecordText, member.ReceiveDatagram());
}

TEST_F(MulticastTest, WhatTheNetworkRefusesIsAnEventUntilTheGroupIsClosed)
{
    const FreshNetwork network;
    const std::vector<std::pair<const char*, int>> cases = {{kGroup, failure::kNetworkUnreachable},
                                                            {"ff05::123", failure::kAddressNotAvailable}};
    for (const auto& [group, number] : cases) {
        control.OpenGroup(group, kPort);
        control.SendToGroup(kRecord, group, kPort);
        EXPECT_EQ(std::vector<int>{}, errors);
        EXPECT_TRUE(WaitFor([&] { return !errors.empty(); }));
        EXPECT_EQ(std::vector<int>{number}, errors) << group;
        errors.clear();
        control.SendToGroup(kRecord, group, kPort);
        control.CloseGroup();
        EXPECT_TRUE(ComesToRest());
        EXPECT_EQ(std::vector<int>{}, errors) << group;
    }
}

}  // namespace
}  // namespace platform::sockets
