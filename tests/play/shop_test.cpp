#include <gtest/gtest.h>

#include "support/files.h"
#include "support/peer.h"
#include "support/player.h"

/// Many tills from end to end.
namespace {

std::string SettingsOf(const std::string& database, const std::string& rest)
{
    return "[Timer]\nInterval=3\n[Database File]\nFilePath=" + database + "\n[TCP/IP Settings]\n" + rest;
}

Peer Receiver(std::uint16_t port = 6001)
{
    return Peer::Listening(noLoop, "127.0.0.1", port);
}

TEST(Shop, EachTillPlaysItsOwnSettingsByteForByte)
{
    const Texts three = {"a1", "a2", "a3"};
    const Texts four = {"b1", "b2", "b3", "b4"};
    Player player(three);
    player.MakeDatabase("b.mdb", four);
    const std::pair<const char*, const char*> tills[] = {
        {"feed.mdb", "PortNumber=6001\n"},
        {"b.mdb", "PortNumber=6002\n"},
        {"b.mdb", "PortNumber=6003\nConnect=Listen\n"},
        {"feed.mdb", "PortNumber=6004\nProtocol=UDP\n"},
        {"b.mdb", "PortNumber=6005\nProtocol=MCAST\nIpAddress=239.1.2.3\n"}};
    int number = 0;
    for (const auto& [database, connection] : tills)
        WriteFile(player.Path(std::to_string(++number) + ".ini"), SettingsOf(database, connection));
    Peer first = Receiver();
    Peer second = Receiver(6002);
    Peer fourth = Peer::Datagrams(noLoop, "127.0.0.1", 6004);
    Peer fifth = Peer::InGroup(noLoop, "239.1.2.3", 6005);
    player.Start("1.ini 2.ini 3.ini 4.ini 5.ini");
    EXPECT_EQ(Peer::ConnectTo(noLoop, 6003).ReceiveAll(), Joined(four));
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(first.TakeConnections(), Texts{Joined(three)});
    EXPECT_EQ(second.TakeConnections(), Texts{Joined(four)});
    EXPECT_EQ(fourth.TakeDatagrams(), three);
    EXPECT_EQ(fifth.TakeDatagrams(), four);
    EXPECT_EQ(outcome.report["records"], 18);
    EXPECT_EQ(outcome.report["tills"][2]["name"], "3.ini");
    EXPECT_EQ(outcome.report["tills"][2]["records"], 4);
}

TEST(Shop, OneBrokenTillDisturbsNoOther)
{
    Player player;
    WriteFile(player.Path("damaged.mdb"), ReadFile(player.Path("feed.mdb")).substr(0, 5000));
    WriteFile(player.Path("good.ini"), SettingsOf("feed.mdb", "PortNumber=6001\n"));
    const std::pair<std::string, int> cases[] = {{SettingsOf("feed.mdb", "PortNumber=99999\n"), 2},
                                                 {SettingsOf("damaged.mdb", "PortNumber=6001\n"), 2},
                                                 {SettingsOf("feed.mdb", "PortNumber=6666\n"), 1}};
    for (const auto& [broken, status] : cases) {
        Peer receiver = Receiver();
        WriteFile(player.Path("broken.ini"), broken);
        const PlayerOutcome outcome = player.Play(
            "good.ini good.ini good.ini good.ini broken.ini good.ini good.ini good.ini good.ini good.ini "
            "--wait 0.3");
        EXPECT_EQ(outcome.status, status) << outcome.errors;
        EXPECT_NE(outcome.errors.find("broken.ini"), std::string::npos) << broken;
        EXPECT_EQ(receiver.TakeConnections(), Texts(9, "onetwothree"));
        EXPECT_EQ(outcome.report["outcome"], "failed");
        for (const auto& till : outcome.report["tills"])
            EXPECT_EQ(till["outcome"], till["name"] == "broken.ini" ? "failed" : "complete") << till;
    }
}

TEST(Shop, TheShardsTogetherPlayEachTillOnce)
{
    Player player;
    std::vector<Peer> receivers;
    for (std::uint16_t port = 6001; port <= 6007; ++port)
        receivers.push_back(Receiver(port));
    for (const std::string shard : {"1/3", "2/3", "3/3"}) {
        const PlayerOutcome outcome = player.Play(
            "--database feed.mdb --interval 1 --port 6001 --tills 7 --port-step 1 --shard " + shard);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
    }
    for (Peer& receiver : receivers)
        EXPECT_EQ(receiver.TakeConnections(), Texts{"onetwothree"}) << receiver.Port();
}

TEST(Shop, TellsHowManyTillsALimitOfDescriptorsServesAndServesThem)
{
    Player player;
    Peer receiver = Receiver();
    const std::string command = "--database feed.mdb --interval 1 --port 6001 --tills ";
    const PlayerOutcome refused = player.Play(command + "100", "ulimit -n 64;");
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(receiver.TakeConnections(), Texts{});
    const auto serves = refused.errors.find("serve ");
    ASSERT_NE(serves, std::string::npos) << refused.errors;
    const int served = std::stoi(refused.errors.substr(serves + 6));
    EXPECT_GT(served, 30);
    const PlayerOutcome played = player.Play(command + std::to_string(served), "ulimit -n 64;");
    EXPECT_EQ(played.status, 0) << played.errors;
    EXPECT_EQ(receiver.TakeConnections(), Texts(static_cast<std::size_t>(served), "onetwothree"));
}

}  // namespace
