#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <numeric>

#include "play/player_process.h"
#include "play/receivers.h"
#include "support/files.h"

/// One till from end to end: the program, a receiver, and what both say in the end.
namespace {

using receivers::Connection;
using receivers::Datagrams;
using receivers::Listener;

constexpr std::uint16_t kPort = 5015;
constexpr const char* kFeed = "--database feed.mdb --interval 1 ";

std::string Joined(const Texts& texts)
{
    return std::accumulate(texts.begin(), texts.end(), std::string());
}

Texts Numbered(int count, std::size_t length = 0)
{
    Texts records;
    for (int record = 0; record < count; ++record)
        records.push_back("<" + std::to_string(record) + std::string(length, '.') + ">");
    return records;
}

void ExpectComplete(const PlayerOutcome& outcome, std::int64_t records)
{
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.report["outcome"], "complete");
    EXPECT_EQ(outcome.report["records"], records);
    EXPECT_EQ(outcome.report["records_refused"], 0);
    EXPECT_EQ(outcome.report["records_in_doubt"], 0);
    EXPECT_EQ(outcome.report["errors"].size(), 0U) << outcome.report["errors"];
}

TEST(Till, PlaysWhatTheOptionsSay)
{
    const std::string times =
        "\x01"
        "12.03.2005 12:00:00\x02";
    struct Case {
        const char* arguments;
        std::string received;
    };
    const std::vector<Case> cases = {
        {"", "onetwothree"},
        {"--address localhost", "onetwothree"},
        {"--from 20", "twothree"},
        {"--to 25", "onetwo"},
        {"--from 15 --to 20 --loop 3", "twotwotwo"},
        {"--loop 2", "onetwothreeonetwothree"},
        {"--unpaced --loop 1000 --to 10",
         [] {
             std::string all;
             for (int i = 0; i < 1000; ++i)
                 all += "one";
             return all;
         }()},
        {"--recorded --speed 1000", "onetwothree"},
        {"--recorded --longest-gap 0.01", "onetwothree"},
        {"--to 10 --transfer-time --locale de_DE", "one" + times},
        {"--to 10 --transfer-time --locale C",
         "one\x01"
         "2005-03-12 12:00:00\x02"},
        {"--interval 2.4 --reconnect yes", "onetwothree"},
    };
    for (const Case& c : cases) {
        Listener listener(kPort);
        Player player;
        const PlayerOutcome outcome = player.Play(kFeed + std::string(c.arguments));
        EXPECT_EQ(outcome.status, 0) << c.arguments << outcome.errors;
        EXPECT_EQ(outcome.report["outcome"], "complete") << c.arguments;
        EXPECT_EQ(outcome.report["bytes"], c.received.size()) << c.arguments;
        EXPECT_EQ(listener.TakeEnded(), Texts{c.received}) << c.arguments;
    }
}

TEST(Till, PlaysASettingsFileAndOptionsStandOverIt)
{
    Listener listener(6000);
    Player player;
    WriteFile(player.Path("shop.ini"),
              "[Timer]\r\nInterval=40000\r\n[TCP/IP Settings]\r\nPortNumber=6000\r\n[Database "
              "File]\r\nFilePath=feed.mdb\r\n");
    EXPECT_EQ(player.Play("shop.ini").status, 2);
    ExpectComplete(player.Play("shop.ini --interval 1"), 3);
    EXPECT_EQ(listener.TakeEnded(), Texts{"onetwothree"});
}

TEST(Till, ServesAReceiverThatCalls)
{
    Player player;
    player.Start(kFeed + std::string("--role Listen"));
    Connection receiver = Connection::To(kPort);
    EXPECT_EQ(receiver.ReadAll(), "onetwothree");
    ExpectComplete(player.Outcome(), 3);
}

TEST(Till, SendsDatagrams)
{
    const Texts records = {"one", "two", "three"};
    Player player;
    Datagrams receiver(kPort);
    ExpectComplete(player.Play(kFeed + std::string("--protocol UDP")), 3);
    EXPECT_EQ(receiver.TakeAll(), records);
    ExpectComplete(player.Play(kFeed + std::string("--protocol UDP --address localhost")), 3);
    EXPECT_EQ(receiver.TakeAll(), records);

    Datagrams group(5020, "239.1.2.3");
    for (const char* role : {"Connect", "Listen"}) {
        ExpectComplete(
            player.Play(kFeed + std::string("--protocol MCAST --address 239.1.2.3 --port 5020 --role ") +
                        role),
            3);
        EXPECT_EQ(group.TakeAll(), records) << role;
    }
}

TEST(Till, SendsDatagramsToAReceiverThatSaysHello)
{
    Player player;
    Datagrams receiver(5020);
    player.Start(kFeed + std::string("--protocol UDP --role Listen"));
    Texts received;
    for (int tries = 0; tries < 2000 && received.size() < 3; ++tries) {
        receiver.SendTo(kPort, "hello");
        ::usleep(1000);
        const Texts more = receiver.TakeAll();
        received.insert(received.end(), more.begin(), more.end());
    }
    ExpectComplete(player.Outcome(), 3);
    EXPECT_EQ(received, (Texts{"one", "two", "three"}));
}

TEST(Till, RefusesWhatCannotBePlayedInOneLineAndSendsNothing)
{
    Listener listener(kPort);
    Player player;
    player.MakeDatabase("empty.mdb", {});
    WriteFile(player.Path("damaged.mdb"), ReadFile(player.Path("feed.mdb")).substr(0, 5000));
    WriteFile(player.Path("feed.txt"), ReadFile(player.Path("feed.mdb")));
    WriteFile(player.Path("wrong.ini"),
              "[TCP/IP Settings]\nProtocol=TPC\n[Database File]\nFilePath=feed.mdb\n");
    for (const char* arguments :
         {"--database feed.mdb --interval 32001", "--database feed.mdb --interval 0",
          "--database feed.mdb --port 70000", "--database feed.mdb --role Both",
          "--database feed.mdb --reconnect perhaps", "--database feed.mdb --protocol MCAST",
          "--database feed.mdb --locale xx_XX", "--database missing.mdb", "--database empty.mdb",
          "--database damaged.mdb", "--database feed.txt", "--database feed.mdb --from 40",
          "--database feed.mdb --from ten", "--database feed.mdb --report /nowhere/report", "wrong.ini",
          "missing.ini", "--database feed.mdb --unknown", "--database feed.mdb --speed 2"}) {
        const PlayerOutcome outcome = player.Play(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 1) << arguments << "\n" << outcome.errors;
    }
    EXPECT_EQ(listener.TakeEnded(), Texts{});
}

TEST(Till, WaitsForItsReceiverWithoutSpendingARecord)
{
    Player player;
    player.Start(kFeed + std::string("--wait 20"));
    ::usleep(300'000);
    Listener late(kPort);
    EXPECT_EQ(late.Accept().ReadAll(), "onetwothree");
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.report["records_refused"], 0);
}

TEST(Till, FailsWhenNobodyComes)
{
    Player player;
    for (const char* arguments :
         {"--wait 0.2", "--wait 0.2 --reconnect yes", "--wait 0.2 --role Listen",
          "--wait 0.2 --protocol UDP --role Listen", "--wait 0.2 --address no.such.host.invalid"}) {
        const PlayerOutcome outcome = player.Play(kFeed + std::string(arguments));
        EXPECT_EQ(outcome.status, 1) << arguments << outcome.errors;
        EXPECT_EQ(outcome.report["outcome"], "failed") << arguments;
        EXPECT_EQ(outcome.report["records"], 0) << arguments;
        EXPECT_GT(outcome.report["errors"].size(), 0U) << arguments;
    }
}

TEST(Till, TellsWhatALostConnectionLeftInDoubt)
{
    Player player(Numbered(200, 1000));
    Listener listener(kPort, 4096);
    player.Start(kFeed + std::string("--status"));
    Connection receiver = listener.Accept();
    const auto lost = [](const nlohmann::json& error) { return error["number"] == 10054; };
    while (player.Errors().find("File Complete") == std::string::npos)
        ::usleep(1000);
    receiver.Reset();
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.report["outcome"], "lost");
    EXPECT_EQ(outcome.report["records"], 200);
    EXPECT_GT(outcome.report["records_in_doubt"], 100);
    EXPECT_LT(outcome.report["records_in_doubt"], 200);
    EXPECT_TRUE(std::ranges::all_of(outcome.report["errors"], lost)) << outcome.report["errors"];
}

TEST(Till, GoesOnWithTheNextRecordWhenALostReceiverIsBack)
{
    const Texts records = Numbered(400);
    for (const bool isReset : {false, true}) {
        for (const bool listens : {false, true}) {
            Player player(records);
            std::optional<Listener> listener;
            if (!listens)
                listener.emplace(kPort);
            player.Start(kFeed + std::string("--interval 2 --reconnect yes --role ") +
                         (listens ? "Listen" : "Connect"));
            const auto receiver = [&] { return listens ? Connection::To(kPort) : listener->Accept(); };
            std::string received;
            {
                Connection first = receiver();
                received = first.Read(100);
                if (isReset)
                    first.Reset();
            }
            received += receiver().ReadAll();
            const PlayerOutcome outcome = player.Outcome();
            EXPECT_EQ(outcome.report["connections"], 2) << outcome.report;
            EXPECT_EQ(outcome.report["records"], 400);
            EXPECT_EQ(outcome.report["records_refused"], 0);
            const std::int64_t inDoubt = outcome.report["records_in_doubt"];
            EXPECT_EQ(outcome.status, inDoubt == 0 ? 0 : 1);
            // What the first receiver did not read any more is missing, and nothing else.
            const std::string all = Joined(records);
            EXPECT_TRUE(received.ends_with("<399>"));
            EXPECT_GT(received.size(), all.size() - 300);
            EXPECT_LE(received.size(), all.size());
        }
    }
}

TEST(Till, LosesNothingToASlowReceiverAtTheEnd)
{
    const Texts records = Numbered(3000, 5000);
    for (const char* rhythm : {"--interval 1 --recorded --speed 1e6", "--unpaced"}) {
        Player player(records);
        Listener listener(kPort);
        player.Start("--database feed.mdb " + std::string(rhythm));
        Connection receiver = listener.Accept();
        ::usleep(1'500'000);
        EXPECT_TRUE(receiver.ReadAll() == Joined(records)) << rhythm;
        ExpectComplete(player.Outcome(), 3000);
    }
}

TEST(Till, EndsInOrderWhenItIsInterrupted)
{
    const Texts records = Numbered(100'000, 3);
    for (const int signal : {SIGINT, SIGTERM}) {
        Player player(records);
        Listener listener(kPort);
        player.Start(kFeed);
        Connection receiver = listener.Accept();
        std::string received = receiver.Read(200);
        player.Signal(signal);
        received += receiver.ReadAll();
        const PlayerOutcome outcome = player.Outcome();
        EXPECT_EQ(outcome.status, 128 + signal);
        EXPECT_EQ(outcome.report["outcome"], "interrupted");
        EXPECT_EQ(outcome.report["bytes"], received.size());
        EXPECT_TRUE(received.ends_with(">"));
    }
}

TEST(Till, EndsAtOnceWhenItIsInterruptedTwice)
{
    Player player(Numbered(20'000, 1000));
    Listener listener(kPort, 4096);  // it takes less than is under way
    player.Start("--database feed.mdb --unpaced");
    Connection receiver = listener.Accept();
    EXPECT_GE(receiver.Read(1000).size(), 1000U);
    player.Signal(SIGINT);
    ::usleep(200'000);  // two of the same that wait are one
    player.Signal(SIGINT);
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 130);
    EXPECT_GT(outcome.report["records_in_doubt"], 0);
}

TEST(Till, PlaysOnWhateverBecomesOfStandardError)
{
    for (const char* errors : {"2>&-", "2>/dev/full", "2>&1 | true", "2>&1 | sleep 1"}) {
        Listener listener(kPort);
        Player player(Numbered(300));
        const PlayerOutcome outcome = player.Play(kFeed + std::string("--status ") + errors);
        EXPECT_EQ(outcome.report["outcome"], "complete") << errors;
        EXPECT_EQ(outcome.report["records"], 300) << errors;
    }
}

TEST(Till, PlaysLongFeedsAndLongPathsWithoutAnErrorOrAnythingWritten)
{
    const Texts records = Numbered(33'000);
    Player player(records);
    const std::string folder = player.Path(std::string(200, 'a') + "/" + std::string(200, 'b'));
    std::filesystem::create_directories(folder);
    std::filesystem::rename(player.Path("feed.mdb"), folder + "/feed.mdb");
    Listener listener(kPort);
    player.Start("--unpaced --database " + folder + "/feed.mdb");
    EXPECT_TRUE(listener.Accept().ReadAll() == Joined(records));
    ExpectComplete(player.Outcome(), 33'000);
    Texts names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(player.Path("")))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    EXPECT_EQ(names,
              (Texts{std::string(200, 'a'), std::string(200, 'b'), "errors", "feed.mdb", "report.json"}));
}

TEST(Till, TellsHowItWentOnStandardErrorAndOutput)
{
    Listener listener(kPort);
    Player player;
    EXPECT_TRUE(player.Play(kFeed).errors.starts_with("complete\n  3 records, 11 bytes in "));
    EXPECT_EQ(player.Play(kFeed + std::string("--quiet")).errors, "");
    const std::string status = player.Play(kFeed + std::string("--quiet --status --locale C")).errors;
    EXPECT_NE(status.find("  Database Initialized\n"), std::string::npos) << status;
    EXPECT_NE(status.find("  File Complete\n"), std::string::npos) << status;
    EXPECT_EQ(player.Play("--help >help").status, 0);
    EXPECT_NE(ReadFile(player.Path("help")).find("--longest-gap"), std::string::npos);
    EXPECT_EQ(player.Play("--version").status, 0);
    EXPECT_EQ(player.Play(kFeed + std::string("--report - >output")).status, 0);
    EXPECT_EQ(nlohmann::json::parse(ReadFile(player.Path("output")))["records"], 3);
}

TEST(Till, RecordedTakesAsLongAsTheRecording)
{
    Listener listener(kPort);
    Player player(Numbered(101));
    const PlayerOutcome outcome = player.Play("--database feed.mdb --recorded --speed 100");
    ExpectComplete(outcome, 101);
    const double seconds = outcome.report["seconds"];
    EXPECT_GE(seconds, 1.0);
    EXPECT_EQ(outcome.report["connections"], 1);
}

}  // namespace
