#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/files.h"
#include "support/peer.h"
#include "support/player.h"

/// One till from end to end: the program, a receiver, and what both say in the end.
namespace {

constexpr std::uint16_t kPort = 5015;
const std::string kFeed = "--database feed.mdb --interval 1 ";
const Texts kRecords = {"one", "two", "three"};  // of a player that is not given others

Peer Receiver(std::uint16_t port = kPort)
{
    return Peer::Listening(noLoop, "127.0.0.1", port);
}

Texts Numbered(int count, std::size_t length = 0)
{
    Texts records;
    for (int record = 0; record < count; ++record)
        records.push_back("<" + std::to_string(record) + std::string(length, '.') + ">");
    return records;
}

void ExpectComplete(const PlayerOutcome& outcome, int records)
{
    EXPECT_EQ(outcome.Brief(), "0 complete, " + std::to_string(records) + " records, 0 refused, 0 in doubt")
        << outcome.errors;
    EXPECT_EQ(outcome.report["errors"].size(), 0U) << outcome.report["errors"];
}

TEST(Till, PlaysWhatTheOptionsSay)
{
    const std::pair<const char*, std::string> cases[] = {
        {"", "onetwothree"},
        {"--address localhost --protocol tcp --role CONNECT --reconnect Yes", "onetwothree"},
        {"--interval 2.4", "onetwothree"},
        {"--from 15 --to 20 --loop 3", "twotwotwo"},
        {"--unpaced --loop 1000 --to 10", Joined(Texts(1000, "one"))},
        {"--recorded --longest-gap 0.01", "onetwothree"},
        {"--to 10 --transfer-time --locale de_DE", "one\x01" + std::string("12.03.2005 12:00:00\x02")},
    };
    for (const auto& [arguments, received] : cases) {
        Peer receiver = Receiver();
        Player player;
        const PlayerOutcome outcome =
            player.Play("--interval 1 --database feed.mdb " + std::string(arguments));
        EXPECT_EQ(outcome.status, 0) << arguments << outcome.errors;
        EXPECT_EQ(outcome.report["outcome"], "complete") << arguments;
        EXPECT_EQ(outcome.report["bytes"], received.size()) << arguments;
        EXPECT_EQ(receiver.TakeConnections(), Texts{received}) << arguments;
    }
}

TEST(Till, PlaysASettingsFileAndOptionsStandOverIt)
{
    Peer receiver = Receiver(6000);
    Player player;
    WriteFile(player.Path("shop.ini"),
              "[Timer]\r\nInterval=40000\r\n[TCP/IP Settings]\r\nPortNumber=6000\r\n"
              "[Database File]\r\nFilePath=feed.mdb\r\n");
    EXPECT_EQ(player.Play("shop.ini").status, 2);
    ExpectComplete(player.Play("shop.ini --interval 1"), 3);
    EXPECT_EQ(receiver.TakeConnections(), Texts{"onetwothree"});
}

TEST(Till, SendsDatagrams)
{
    Player player;
    Peer receiver = Peer::Datagrams(noLoop, "127.0.0.1", kPort);
    Peer group = Peer::InGroup(noLoop, "239.1.2.3", 5020);
    const std::pair<Peer&, const char*> cases[] = {
        {receiver, "UDP"},
        {receiver, "UDP --address localhost"},
        {group, "MCAST --address 239.1.2.3 --port 5020"},
        {group, "MCAST --address 239.1.2.3 --port 5020 --role Listen"}};
    for (const auto& [peer, arguments] : cases) {
        ExpectComplete(player.Play(kFeed + "--protocol " + arguments), 3);
        EXPECT_EQ(peer.TakeDatagrams(), kRecords) << arguments;
    }
}

TEST(Till, TellsWhichRecordsAreRefused)
{
    Player player({"one", std::string(65508, 'x'), "", "three"});
    Peer receiver = Peer::Datagrams(noLoop, "127.0.0.1", kPort);
    const PlayerOutcome outcome = player.Play(kFeed + "--protocol UDP");
    EXPECT_EQ(outcome.Brief(), "1 failed, 3 records, 1 refused, 0 in doubt");
    EXPECT_EQ(outcome.report["bytes"], 8);
    EXPECT_EQ(outcome.report["errors"][0]["number"], 10040);
    EXPECT_EQ(receiver.TakeDatagrams(), (Texts{"one", "", "three"}));
}

TEST(Till, SendsDatagramsToAReceiverThatSaysHello)
{
    Player player;
    Peer receiver = Peer::Datagrams(noLoop, "127.0.0.1", 5020);
    player.Start(kFeed + "--protocol UDP --role Listen");
    EXPECT_TRUE(noLoop.WaitFor([&] {
        receiver.SendTo(kPort, "hello");
        return receiver.HasDatagram();
    }));
    ExpectComplete(player.Outcome(), 3);
    EXPECT_EQ(receiver.TakeDatagrams(), kRecords);
}

/// Each of the cases behind the same arguments, in one line, and nothing is sent.
void ExpectRefused(Player& player, const std::string& arguments, const Texts& cases)
{
    Peer receiver = Receiver();
    for (const std::string& each : cases) {
        const PlayerOutcome outcome = player.Play(arguments + each);
        EXPECT_EQ(outcome.status, 2) << each;
        EXPECT_EQ(std::ranges::count(outcome.errors, '\n'), 1) << each << "\n" << outcome.errors;
    }
    EXPECT_EQ(receiver.TakeConnections(), Texts{});
}

TEST(Till, RefusesOptionsThatMakeNoSense)
{
    Player player;
    ASSERT_EQ(::mkfifo(player.Path("unread").c_str(), 0600), 0);
    ExpectRefused(
        player, "--database feed.mdb ",
        {"--interval 32000.6", "--interval 0.4", "--interval -5",  "--interval fast", "--port 65536",
         "--port 0",           "--port http",    "--port ",        "--protocol SCTP", "--protocol MCAST",
         "--role Both",        "--reconnect 1",  "--address ''",   "--locale xx_XX",  "--from 40",
         "--from ten",         "--loop -1",      "--loop 1.5",     "--speed 2",       "--longest-gap 2",
         "--wait -1",          "--tills 0",      "--port-step -1", "--shard 0/3",     "--shard 4/3",
         "--shard 2",          "--shard 1/3x",   "--shard 1/2",    "--database ''",   "--report unread",
         "--unknown"});
    ExpectRefused(player, "--database feed.mdb ",
                  {"--recorded --speed 0", "--recorded --speed nan", "--recorded --unpaced",
                   "--report /nowhere/report"});
}

TEST(Till, RefusesFilesThatCannotBePlayed)
{
    Player player;
    player.MakeDatabase("empty.mdb", {});
    const std::string feed = ReadFile(player.Path("feed.mdb"));
    WriteFile(player.Path("damaged.mdb"), feed.substr(0, 5000));
    WriteFile(player.Path("feed.txt"), feed);
    WriteFile(player.Path("wrong.ini"),
              "[TCP/IP Settings]\nProtocol=TPC\n[Database File]\nFilePath=feed.mdb\n");
    WriteFile(player.Path("none.ini"), "[Timer]\nInterval=1\n");
    ExpectRefused(player, "",
                  {"/proc/self/mem --database feed.mdb", "''", "wrong.ini", "none.ini", "missing.ini"});
    ExpectRefused(player, "--database ", {"missing.mdb", "empty.mdb", "damaged.mdb", "feed.txt"});
}

TEST(Till, WaitsForItsReceiverWithoutSpendingARecord)
{
    Player player;
    player.Start(kFeed + "--wait 20");
    ::usleep(300'000);
    Peer late = Receiver();
    EXPECT_EQ(late.Accepted().ReceiveAll(), "onetwothree");
    EXPECT_EQ(player.Outcome().Brief(), "0 complete, 3 records, 0 refused, 0 in doubt");
}

TEST(Till, FailsWhenNobodyComes)
{
    Player player;
    for (const std::string arguments : {"", "--reconnect yes", "--role Listen",
                                        "--protocol UDP --role Listen", "--address no.such.host.invalid"}) {
        const PlayerOutcome outcome = player.Play(kFeed + "--wait 0.2 " + arguments);
        EXPECT_EQ(outcome.Brief(), "1 failed, 0 records, 0 refused, 0 in doubt") << arguments;
        EXPECT_GT(outcome.report["errors"].size(), 0U) << arguments;
    }
}

TEST(Till, TellsWhatALostConnectionLeftInDoubt)
{
    Player player(Numbered(200, 1000));
    Peer listener = Receiver();
    listener.KeepOnly(4096);
    player.Start(kFeed + "--status");
    Peer receiver = listener.Accepted();
    ASSERT_TRUE(player.Running().Says("File Complete"));
    receiver.Reset();
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.report["outcome"], "lost");
    EXPECT_EQ(outcome.report["records"], 200);
    EXPECT_GT(outcome.report["records_in_doubt"], 100);
    EXPECT_LT(outcome.report["records_in_doubt"], 200);
    for (const auto& error : outcome.report["errors"])
        EXPECT_EQ(error["number"], 10054) << error;
}

TEST(Till, GoesOnWithTheNextRecordWhenALostReceiverIsBack)
{
    const Texts records = Numbered(150);
    const std::string all = Joined(records);
    for (const bool isReset : {false, true}) {
        for (const bool listens : {false, true}) {
            Player player(records);
            std::optional<Peer> listener;
            if (!listens)
                listener = Receiver();
            player.Start(kFeed + "--interval 2 --reconnect yes --role " + (listens ? "Listen" : "Connect"));
            const auto next = [&] { return listens ? Peer::ConnectTo(noLoop, kPort) : listener->Accepted(); };
            std::string received;
            {
                Peer first = next();
                received = first.Receive(100);
                if (isReset)
                    first.Reset();
            }
            received += next().ReceiveAll();
            const PlayerOutcome outcome = player.Outcome();
            EXPECT_EQ(outcome.report["connections"], 2) << outcome.report;
            EXPECT_EQ(outcome.report["records"], 150);
            EXPECT_EQ(outcome.report["records_refused"], 0);
            EXPECT_EQ(outcome.status, outcome.report["records_in_doubt"] == 0 ? 0 : 1);
            // What the first receiver did not read any more is missing, and nothing else.
            EXPECT_TRUE(received.ends_with("<149>"));
            EXPECT_GT(received.size(), all.size() - 300);
            EXPECT_LE(received.size(), all.size());
        }
    }
}

TEST(Till, LosesNothingToASlowReceiverAtTheEnd)
{
    const Texts records = Numbered(60, 250'000);
    const std::string all = Joined(records);
    Player player(records);
    // Without a pace it is more than may wait in memory.
    for (const auto& [rhythm, loops] :
         {std::pair("--interval 1 --recorded --speed 1e6", 1), {"--unpaced", 5}}) {
        Peer listener = Receiver();
        player.Start("--database feed.mdb --loop " + std::to_string(loops) + " " + rhythm);
        Peer receiver = listener.Accepted();
        ::usleep(300'000);
        EXPECT_TRUE(receiver.ReceiveAll() == Joined(Texts(static_cast<std::size_t>(loops), all))) << rhythm;
        ExpectComplete(player.Outcome(), 60 * loops);
    }
}

TEST(Till, GivesUpAReceiverThatTakesNothingMore)
{
    Player player(Numbered(300, 25'000));
    Peer listener = Receiver();
    player.Start("--database feed.mdb --unpaced --loop 0 --wait 0.1");
    const Peer receiver = listener.Accepted();
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.report["outcome"], "lost");
    EXPECT_GT(outcome.report["records_in_doubt"], 0);
    EXPECT_TRUE(outcome.report["lateness_ms"]["p99"].is_null());
}

TEST(Till, EndsInOrderWhenItIsInterrupted)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        Player player(Numbered(100, 3));
        Peer listener = Receiver();
        player.Start(kFeed + "--loop 0");
        Peer receiver = listener.Accepted();
        std::string received = receiver.Receive(1000);
        player.Running().Signal(signal);
        received += receiver.ReceiveAll();
        const PlayerOutcome outcome = player.Outcome();
        EXPECT_EQ(outcome.status, 128 + signal);
        EXPECT_EQ(outcome.report["outcome"], "interrupted");
        EXPECT_EQ(outcome.report["records_in_doubt"], 0);
        EXPECT_EQ(outcome.report["bytes"], received.size());
        EXPECT_TRUE(received.ends_with(">"));
    }
}

TEST(Till, EndsInOrderWhenItsConnectionIsLostAndNotToldYet)
{
    Player player;
    Peer listener = Receiver();
    player.Start("--database feed.mdb --interval 5000 --reconnect yes");
    listener.Accepted().Reset();
    listener.Accepted().Reset();  // within 500 ms of the first: its error is held back
    ::usleep(50'000);
    player.Running().Signal(SIGINT);
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 130) << outcome.errors;
    EXPECT_EQ(outcome.report["outcome"], "interrupted");
}

TEST(Till, EndsAtOnceWhenItIsInterruptedTwice)
{
    Player player(Numbered(100, 1000));
    Peer listener = Receiver();
    listener.KeepOnly(4096);  // it takes less than is under way
    player.Start("--database feed.mdb --unpaced --loop 0");
    Peer receiver = listener.Accepted();
    EXPECT_GE(receiver.Receive(1000).size(), 1000U);
    player.Running().Signal(SIGINT);
    ::usleep(200'000);  // two of the same that wait are one
    player.Running().Signal(SIGINT);
    const PlayerOutcome outcome = player.Outcome();
    EXPECT_EQ(outcome.status, 130);
    EXPECT_GT(outcome.report["records_in_doubt"], 0);
}

TEST(Till, PlaysOnWhateverBecomesOfStandardError)
{
    Player player(Numbered(300));
    for (const std::string errors : {"2>&-", "2>/dev/full", "2>&1 | true", "2>&1 | sleep 1"}) {
        Peer listener = Receiver();
        const nlohmann::json report = player.Play(kFeed + "--status " + errors).report;
        EXPECT_EQ(report["outcome"], "complete") << errors;
        std::filesystem::remove(player.Path("report.json"));
    }
}

TEST(Till, PlaysLongFeedsAndLongPathsWithoutAnErrorOrAnythingWritten)
{
    const Texts records = Numbered(33'000);
    Player player(records);
    const std::string folder = player.Path(std::string(200, 'a') + "/" + std::string(200, 'b'));
    std::filesystem::create_directories(folder);
    std::filesystem::rename(player.Path("feed.mdb"), folder + "/feed.mdb");
    Peer listener = Receiver();
    player.Start("--unpaced --database " + folder + "/feed.mdb");
    EXPECT_TRUE(listener.Accepted().ReceiveAll() == Joined(records));
    ExpectComplete(player.Outcome(), 33'000);
    Texts names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(player.Path("")))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    EXPECT_EQ(names, (Texts{std::string(200, 'a'), std::string(200, 'b'), "feed.mdb", "report.json"}));
}

TEST(Till, TellsHowItWentOnStandardErrorAndOutput)
{
    Peer listener = Receiver();
    Player player;
    EXPECT_TRUE(player.Play(kFeed).errors.starts_with("complete\n  3 records, 11 bytes in "));
    EXPECT_EQ(player.Play(kFeed + "--quiet").errors, "");
    const std::string status = player.Play(kFeed + "--quiet --status --locale C").errors;
    EXPECT_NE(status.find("  Database Initialized\n"), std::string::npos) << status;
    EXPECT_NE(status.find("  File Complete\n"), std::string::npos) << status;
    EXPECT_EQ(player.Play("--help >help").status, 0);
    EXPECT_NE(ReadFile(player.Path("help")).find("--longest-gap"), std::string::npos);
    EXPECT_EQ(player.Play("--version").status, 0);
    EXPECT_EQ(player.Play(kFeed + "--report - >output").status, 0);
    EXPECT_EQ(nlohmann::json::parse(ReadFile(player.Path("output")))["records"], 3);
}

TEST(Till, RecordedTakesAsLongAsTheRecording)
{
    Peer listener = Receiver();
    Player player(Numbered(101));
    const PlayerOutcome outcome = player.Play("--database feed.mdb --recorded --speed 100");
    ExpectComplete(outcome, 101);
    EXPECT_GE(outcome.report["seconds"], 1.0);
    EXPECT_EQ(outcome.report["connections"], 1);
}

}  // namespace
