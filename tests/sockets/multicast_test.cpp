#include "platform/sockets/multicast.h"

#include "sockets/winsock_fixture.h"
#include "support/fresh_network.h"

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

    /// True when a member of the group on this interface gets a record.
    bool Reaches(Peer member)
    {
        control.SendToGroup(kRecord, kGroup, member.Port());
        return member.ReceiveDatagram() == kRecordText;
    }

    EventGate gate;
    EpollTestLoop loop;
    Multicast control{gate, loop.loop};
    std::vector<int> errors;
};

TEST_F(MulticastTest, EveryMemberOfTheGroupGetsTheRecordAsOneDatagram)
{
    for (const char* group : {kGroup, "ff02::123", "ff05::123"}) {
        Peer member = Peer::InGroup(loop, group);
        Peer other = Peer::InGroup(loop, group, member.Port());
        control.OpenGroup(' ' + std::string(group) + ' ', member.Port());
        control.SendToGroup(kRecord, group, member.Port());
        EXPECT_EQ(kRecordText, member.ReceiveDatagram()) << group;
        EXPECT_EQ(kRecordText, other.ReceiveDatagram()) << group;
    }
    EXPECT_EQ(std::vector<int>{}, errors);
}

TEST_F(MulticastTest, TheBestInterfaceOfTheMomentCarriesTheRecord)
{
    const FreshNetwork network;
    FreshNetwork::BringLoopBackUp();
    EXPECT_TRUE(Reaches(Peer::InGroup(loop, kGroup))) << "without a route";
    FreshNetwork::Run(
        "ip link add outward type veth peer name farside && "
        "ip address add 10.1.2.3/24 dev outward && ip link set outward up");
    EXPECT_TRUE(Reaches(Peer::InGroup(loop, kGroup, 0, "outward")))
        << "without a route, past one without multicast";
    FreshNetwork::Run("ip route add 224.0.0.0/4 dev lo");
    EXPECT_TRUE(Reaches(Peer::InGroup(loop, kGroup))) << "a route comes up later";
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
        EXPECT_TRUE(loop.WaitFor([&] { return !errors.empty(); }));
        EXPECT_EQ(std::vector<int>{number}, errors) << group;
        errors.clear();
        control.SendToGroup(kRecord, group, kPort);
        control.CloseGroup();
        EXPECT_TRUE(loop.ComesToRest());
        EXPECT_EQ(std::vector<int>{}, errors) << group;
    }
}

}  // namespace
}  // namespace platform::sockets
