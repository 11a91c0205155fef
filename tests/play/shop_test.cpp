#include <gtest/gtest.h>

#include <set>

#include "play/player_process.h"
#include "play/receivers.h"
#include "support/files.h"

/// Many tills from end to end.
namespace {

using receivers::Connection;
using receivers::Datagrams;
using receivers::Listener;

std::string SettingsOf(const std::string& database, const std::string& rest)
{
    return "[Timer]\nInterval=3\n[Database File]\nFilePath=" + database + "\n[TCP/IP Settings]\n" + rest;
}

TEST(Shop, EachTillPlaysItsOwnSettingsByteForByte)
{
    Player player({"a1", "a2", "a3"});
    player.MakeDatabase("b.mdb", {"b1", "b2", "b3", "b4"});
    WriteFile(player.Path("1.ini"), SettingsOf("feed.mdb", "PortNumber=6001\n"));
    WriteFile(player.Path("2.ini"), SettingsOf("b.mdb", "PortNumber=6002\n"));
    WriteFile(player.Path("3.ini"), SettingsOf("b.mdb", "PortNumber=6003\nConnect=Listen\n"));
    WriteFile(player.Path("4.ini"), SettingsOf("feed.mdb", "PortNumber=6004\nProtocol=UDP\n"));
    WriteFile(player.Path("5.ini"),
              SettingsOf("b.mdb", "PortNumber=6005\nProtocol=MCAST\nIpAddress=239.1.2.3\n"));
    Listener first(6001);
    Listener second(6002);
    Datagrams fourth(6004);
    Datagrams fifth(6005, "239.1.2.3");
    player.Start("1.ini 2.ini 3.ini 4.ini 5.ini");
    EXPECT_EQ(Connection::To(6003).ReadAll(), "b1b2b3b4");
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(first.TakeEnded(), Texts{"a1a2a3"});
    EXPECT_EQ(second.TakeEnded(), Texts{"b1b2b3b4"});
    EXPECT_EQ(fourth.TakeAll(), (Texts{"a1", "a2", "a3"}));
    EXPECT_EQ(fifth.TakeAll(), (Texts{"b1", "b2", "b3", "b4"}));
    EXPECT_EQ(outcome.report["records"], 18);
    EXPECT_EQ(outcome.report["tills"][2]["name"], "3.ini");
    EXPECT_EQ(outcome.report["tills"][2]["records"], 4);
}

TEST(Shop, OneBrokenTillDisturbsNoOther)
{
    struct Case {
        std::string broken;
        int status;
    };
    const std::vector<Case> cases = {{SettingsOf("feed.mdb", "PortNumber=99999\n"), 2},
                                     {SettingsOf("damaged.mdb", "PortNumber=6001\n"), 2},
                                     {SettingsOf("feed.mdb", "PortNumber=6666\n"), 1}};
    for (const Case& c : cases) {
        Player player;
        Listener listener(6001);
        WriteFile(player.Path("damaged.mdb"), ReadFile(player.Path("feed.mdb")).substr(0, 5000));
        WriteFile(player.Path("good.ini"), SettingsOf("feed.mdb", "PortNumber=6001\n"));
        WriteFile(player.Path("broken.ini"), c.broken);
        const PlayerOutcome outcome = player.Play(
            "good.ini good.ini good.ini good.ini broken.ini good.ini good.ini good.ini good.ini good.ini "
            "--wait 0.3");
        EXPECT_EQ(outcome.status, c.status) << outcome.errors;
        EXPECT_NE(outcome.errors.find("broken.ini"), std::string::npos) << c.broken;
        EXPECT_EQ(listener.TakeEnded(), Texts(9, "onetwothree"));
        EXPECT_EQ(outcome.report["outcome"], "failed");
        for (const auto& till : outcome.report["tills"])
            EXPECT_EQ(till["outcome"], till["name"] == "broken.ini" ? "failed" : "complete") << till;
    }
}

TEST(Shop, TheShardsTogetherPlayEachTillOnce)
{
    std::multiset<std::string> names;
    for (const char* shard : {"1/3", "2/3", "3/3"}) {
        Player player;
        std::vector<Listener> listeners;
        for (std::uint16_t port = 6001; port <= 6007; ++port)
            listeners.emplace_back(port);
        const PlayerOutcome outcome =
            player.Play("--database feed.mdb --interval 1 --port 6001 --tills 7 --port-step 1 --shard " +
                        std::string(shard));
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        for (Listener& listener : listeners) {
            for (const std::string& content : listener.TakeEnded())
                names.insert(std::to_string(&listener - listeners.data()) + content);
        }
    }
    const std::multiset<std::string> expected = {"0onetwothree", "1onetwothree", "2onetwothree",
                                                 "3onetwothree", "4onetwothree", "5onetwothree",
                                                 "6onetwothree"};
    EXPECT_EQ(names, expected);
}

TEST(Shop, TellsHowManyTillsALimitOfDescriptorsServesAndServesThem)
{
    Player player;
    Listener listener(6001);
    const std::string command = "--database feed.mdb --interval 1 --port 6001 --tills ";
    const PlayerOutcome refused = player.PlayLimited(64, command + "100");
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(listener.TakeEnded(), Texts{});
    const auto serves = refused.errors.find("serve ");
    ASSERT_NE(serves, std::string::npos) << refused.errors;
    const int served = std::stoi(refused.errors.substr(serves + 6));
    EXPECT_GT(served, 30);
    const PlayerOutcome played = player.PlayLimited(64, command + std::to_string(served));
    EXPECT_EQ(played.status, 0) << played.errors;
    EXPECT_EQ(listener.TakeEnded(), Texts(static_cast<std::size_t>(served), "onetwothree"));
}

}  // namespace
