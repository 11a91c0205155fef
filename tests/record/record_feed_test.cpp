#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "record/read_recording.h"
#include "support/files.h"
#include "support/peer.h"
#include "support/run_command.h"
#include "support/temporary_folder.h"

namespace {

const Texts kRecords = {"Total\r\n\"1\"\n;;", EveryByte() + ";;", "\x80\x81\xFF\r;;", ";;"};

class RecordFeedTest : public testing::Test {
protected:
    /// The command that records with these options, which a shell reads.
    [[nodiscard]] std::string Recording(const std::string& options) const
    {
        return "exec " RECORD_FEED " " + options + " " + path;
    }

    /// True as soon as so many records are in the file.
    bool Recorded(std::size_t count)
    {
        return noLoop.WaitFor([&] { return std::filesystem::exists(path) && Records().size() >= count; });
    }

    [[nodiscard]] Texts Records() const { return PlayedTexts(path); }

    /// The records at the end of a recording, which goes.
    Texts TakeRecords()
    {
        Texts records = Records();
        std::filesystem::remove(path);
        return records;
    }

    /// The port at which it waits.
    static std::uint16_t PortOf(const RunningCommand& recorder)
    {
        const std::string before = "on port ";
        if (!recorder.Says(before))
            return 0;
        const std::string said = recorder.Said();
        return static_cast<std::uint16_t>(std::stoi(said.substr(said.find(before) + before.size())));
    }

    static Peer TillFor(const RunningCommand& recorder) { return Peer::ConnectTo(noLoop, PortOf(recorder)); }

    static void SendDatagram(std::uint16_t port, const std::string& record,
                             const std::string& address = "127.0.0.1")
    {
        const bool isIPv6 = address.find(':') != std::string::npos;
        Peer::Datagrams(noLoop, isIPv6 ? "::" : "0.0.0.0").SendTo(port, record, address);
    }

    TemporaryFolder folder;
    std::string path = folder.Path("day.csv");
};

TEST_F(RecordFeedTest, ServesOneTillAtATimeAndTheNextWhenItGoes)
{
    RunningCommand recorder(Recording("--port 0 --ends-with ';'"));
    Peer first = TillFor(recorder);
    Peer second = TillFor(recorder);
    second.Send("2;cut off");
    first.Send("1;");
    ASSERT_TRUE(Recorded(1));
    first.Send("last words");
    first.EndSending();
    ASSERT_TRUE(Recorded(3));
    EXPECT_EQ(recorder.End(SIGTERM), 0);
    EXPECT_EQ(Records(), (Texts{"1;", "last words", "2;", "cut off"}));
    EXPECT_TRUE(recorder.Says("2 records without the end that was asked for"));
}

TEST_F(RecordFeedTest, ConnectsToATillUntilItIsThereAndAgainWhenItWasGone)
{
    RunningCommand recorder(Recording("--role Connect --address localhost --port 5015 --ends-with ';'"));
    EXPECT_TRUE(recorder.Says("the connection was refused; tried again until it is there"));
    Peer till = Peer::Listening(noLoop, "127.0.0.1", 5015);
    till.Accepted().Send("1;");
    till.Accepted().Send("2;");
    ASSERT_TRUE(Recorded(2));
    EXPECT_EQ(recorder.End(SIGINT), 0);
    EXPECT_EQ(Records(), (Texts{"1;", "2;"}));
}

TEST_F(RecordFeedTest, RecordsDatagramsEmptyOnesToo)
{
    Texts records = kRecords;
    records.emplace_back();
    records.emplace_back(65507, 'x');
    for (const char* address : {"127.0.0.1", "::1"}) {
        RunningCommand recorder(Recording("--protocol udp --port 0 --records 6"));
        for (const std::string& record : records)
            SendDatagram(PortOf(recorder), record, address);
        EXPECT_EQ(recorder.End(), 0);
        EXPECT_EQ(TakeRecords(), records);
    }
}

TEST_F(RecordFeedTest, SaysHelloToATillThatSendsDatagramsToWhoeverDoes)
{
    Peer till = Peer::Datagrams(noLoop);
    RunningCommand recorder(
        Recording("--protocol UDP --role Connect --address 127.0.0.1 --records 2 --port " + till.PortText()));
    till.AnswerWhoSends();
    till.Send("1");
    till.Send("2");
    EXPECT_EQ(recorder.End(), 0);
    EXPECT_EQ(Records(), (Texts{"1", "2"}));
}

TEST_F(RecordFeedTest, JoinsAGroup)
{
    for (const std::string group : {"239.1.2.3", "ff02::123", "ff05::123"}) {
        RunningCommand recorder(Recording("--protocol MCAST --port 5016 --records 2 --address " + group));
        EXPECT_TRUE(recorder.Says("joined group " + group + " port 5016 on lo"));
        SendDatagram(5016, "another group", "239.1.2.4");
        SendDatagram(5016, "1", group);
        SendDatagram(5016, "2", group);
        EXPECT_EQ(recorder.End(), 0);
        EXPECT_EQ(TakeRecords(), (Texts{"1", "2"})) << group;
    }
}

TEST_F(RecordFeedTest, ReadsStandardInputWhateverItIs)
{
    const std::string feed = folder.Path("feed");
    WriteFile(feed, Joined(kRecords) + "end");
    Texts records = kRecords;
    records.emplace_back("end");
    for (const std::string& input :
         {"cat " + feed + " |", "exec <" + feed + ";", "socat -u OPEN:" + feed + " EXEC:'sh -c cat' |"}) {
        EXPECT_EQ(RunCommand(input + Recording("--stdin --ends-with ';;'")).exitCode, 0);
        EXPECT_EQ(TakeRecords(), records) << input;
    }
    EXPECT_EQ(RunCommand(Recording("--stdin </dev/null")).exitCode, 0);
    EXPECT_TRUE(Records().empty());
}

TEST_F(RecordFeedTest, APauseEndsARecord)
{
    RunningCommand recorder(Recording("--port 0 --gap 20"));
    Peer till = TillFor(recorder);
    for (std::size_t count = 1; count <= 3; ++count) {
        till.Send("record;");
        ASSERT_TRUE(Recorded(count));
    }
    EXPECT_EQ(recorder.End(SIGINT), 0);
    EXPECT_EQ(Records(), Texts(3, "record;"));
}

TEST_F(RecordFeedTest, TakesTheTransferTimeAsTheTimestamp)
{
    const std::pair<std::string, std::string> times[] = {{"14.05.2021 15:07:09", "2021-05-14T15:07:09"},
                                                         {"15:07:09", "1899-12-30T15:07:09"},
                                                         {"", ""},
                                                         {"noon", ""},
                                                         {"01.01.0050", ""}};
    RunningCommand recorder(Recording("--port 0 --transfer-time --locale de_DE --records 5"));
    Peer till = TillFor(recorder);
    for (const auto& [sent, kept] : times)
        till.Send("A\x01" + sent + "\x02");
    EXPECT_EQ(recorder.End(), 0);
    EXPECT_EQ(Records(), Texts(5, "A"));
    const std::string csv = ReadFile(path);
    int ref = 0;
    for (const auto& [sent, kept] : times)
        EXPECT_NE(csv.find("\n" + std::to_string(++ref) + "," + kept + ","), std::string::npos) << csv;
    EXPECT_TRUE(recorder.Says("the time \"noon\" cannot be read; see --locale"));
    EXPECT_TRUE(recorder.Says("2 transfer times that cannot be read"));
}

TEST_F(RecordFeedTest, TakesTheTransferTimeOfDatagrams)
{
    RunningCommand recorder(Recording("--protocol UDP --port 0 --transfer-time --locale C --records 2"));
    SendDatagram(PortOf(recorder), std::string("A\x01\x02\x01") + "2021-05-14\x02");
    SendDatagram(PortOf(recorder), "B");
    EXPECT_EQ(recorder.End(), 0);
    EXPECT_EQ(Records(), (Texts{"A\x01\x02", "B"}));
    EXPECT_TRUE(recorder.Says("1 record without a transfer time"));
}

TEST_F(RecordFeedTest, AKillCostsAtMostTheRecordUnderWay)
{
    std::mt19937 random(11);
    std::size_t recorded = 0;
    for (int round = 0; round < 5; ++round) {
        RunningCommand recorder(Recording("--port 0 --append --ends-with ';'"));
        Peer till = TillFor(recorder);
        till.Send("round begins;");
        ASSERT_TRUE(Recorded(++recorded));
        std::string sent;
        for (const std::size_t most = 1 + random() % 400; sent.size() < most * 1000;)
            sent += std::string(random() % 3000, '"') + "\n\x81;";
        till.Send(sent);
        EXPECT_EQ(recorder.End(SIGKILL), 128 + SIGKILL);

        const CommandOutcome made = RunCommand(MAKE_DATABASE " " + path + " " + folder.Path("day.mdb"));
        EXPECT_EQ(made.exitCode, 0) << made.output;
        const Texts texts = Records();
        const std::string kept = Joined({texts.begin() + static_cast<std::ptrdiff_t>(recorded), texts.end()});
        EXPECT_TRUE(sent.starts_with(kept));
        recorded = texts.size();
    }
}

TEST_F(RecordFeedTest, AppendingSaysWhatItFindsCutOff)
{
    const std::pair<const char*, std::string> cases[] = {
        {"2,,2026-05-14,\"a\"", "the last line in " + path + " had no end; its record may lack one too\n"},
        {"2,,2026-05-14,\"a", "the last record in " + path + " was cut off; its 16 bytes are taken away\n"},
        {"2,,2026-05-14,\"a\"\n", path + " goes on with ref 3\n"}};
    for (const auto& [row, said] : cases) {
        WriteFile(path,
                  "ref,timestamp,datetimestamp,rawtransaction\n1,,2026-05-14,\"\"\n" + std::string(row));
        const CommandOutcome outcome = RunCommand(RECORD_FEED " --stdin --append " + path + " </dev/null");
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_TRUE(outcome.output.starts_with("record_feed: " + said)) << outcome.output;
    }
}

TEST_F(RecordFeedTest, AFullDiskEndsTheRecordingAndLeavesItSound)
{
    const TemporaryFolder roomy;
    const std::string output =
        RunCommand("unshare -m sh -c 'mount -t tmpfs -o size=64k none " + folder.Path() +
                   " && yes 0123456789 | " RECORD_FEED " --stdin --ends-with \"\\n\" " + path +
                   "; echo status $?; " MAKE_DATABASE " " + path + " " + roomy.Path("day.mdb") +
                   " && echo made; tail -n 2 " + path + "'")
            .output;
    const auto made = output.find("status 1\nmade\n");
    ASSERT_NE(made, std::string::npos) << output;
    const std::string last = std::to_string(std::stoi(output.substr(made + 14)));
    for (const std::string& said : {path + " cannot be written: No space left on device\n",
                                    last + " records before are whole in " + path + "\n"})
        EXPECT_NE(output.find(said), std::string::npos) << output;
    EXPECT_TRUE(output.ends_with("\"\n")) << output.substr(output.size() - 100);
}

TEST_F(RecordFeedTest, AStandardErrorThatIsClosedOrUnreadDisturbsNothing)
{
    for (const std::string errors : {" 2>&-", " 2>&1 | true", " 2>/dev/full"}) {
        const std::string recording = Recording("--stdin --ends-with ';'");
        EXPECT_EQ(RunCommand("yes 'a;' | head -n 1000 | " + recording + errors).exitCode, 0) << errors;
        EXPECT_EQ(ReadFile(path).find("record_feed"), std::string::npos) << errors;
        EXPECT_EQ(TakeRecords().size(), 1001U) << errors;
    }
}

TEST_F(RecordFeedTest, EndsAfterItsTimeOrBySignalAndKeepsTheRecordUnderWay)
{
    for (const auto& [options, signal] :
         {std::pair("--seconds 0.5 ", 0), {"", SIGINT}, {"", SIGTERM}, {"", SIGHUP}}) {
        RunningCommand recorder(Recording(options + std::string("--port 0 --ends-with ';'")));
        Peer till = TillFor(recorder);
        till.Send("whole;under way");
        ASSERT_TRUE(Recorded(1));
        EXPECT_EQ(recorder.End(signal), 0);
        EXPECT_EQ(TakeRecords(), (Texts{"whole;", "under way"})) << signal;
    }
}

TEST_F(RecordFeedTest, SaysInOneLineWhatMakesNoSense)
{
    const Peer busy = Peer::Listening(noLoop);
    const struct {
        std::string options;
        std::string reason;
        int status = 2;
    } cases[] = {
        {"", "--port is missing"},
        {"--port 70000", "--port"},
        {"--port 1 --role Both", "--role"},
        {"--port 1 --role Connect", "--address is missing"},
        {"--port 0 --role Connect --address 127.0.0.1", "--port 0 is no port to go to"},
        {"--protocol MCAST --port 5016", "--address is missing: the group to join"},
        {"--protocol MCAST --port 5016 --address 127.0.0.1", "\"127.0.0.1\" is no multicast group"},
        {"--port 1 --address nowhere.invalid", "\"nowhere.invalid\" is no address in digits"},
        {"--protocol UDP --port 1 --ends-with x", "--gap and --ends-with are for streams"},
        {"--protocol UDP --port 1 --gap 5", "--gap and --ends-with are for streams"},
        {"--protocol UDP --port 1 --forward a:1", "--forward is for TCP alone"},
        {"--stdin --forward a:1", "--forward is for TCP alone"},
        {"--stdin --port 1", "--stdin"},
        {"--port 1 --forward a", "\"a\" is no HOST:PORT"},
        {"--port 1 --forward :5", "\":5\" is no HOST:PORT"},
        {"--port 1 --gap 0", "--gap"},
        {"--port 1 --gap 1.5", "--gap: 1.5 is no whole number from 1 to 86400000"},
        {"--port 1 --records 0", "--records"},
        {"--port 1 --seconds -1", "--seconds"},
        {"--port 1 --seconds nan", "--seconds: nan is no number that makes sense here"},
        {"--port 1 --ends-with ''", "--ends-with: the text is empty"},
        {"--port 1 --forward ''", "--forward: the text is empty"},
        {"--port 1 --ends-with '\\q'", "behind \\ stands n, r, t, \\ or x"},
        {"--port 1 --ends-with '\\x1'", "behind \\ stands n, r, t, \\ or x"},
        {"--port 1 --ends-with \u0416", "a character that code page 1252 lacks"},
        {"--port 1 --ends-with x --transfer-time", "--ends-with"},
        {"--stdin --locale xx_YY", "\"xx_YY\" is no locale known here"},
        {"--port " + busy.PortText(), "the address is in use", 1},
    };
    for (const auto& [options, reason, status] : cases) {
        const CommandOutcome outcome = RunCommand(Recording(options) + " </dev/null");
        EXPECT_EQ(outcome.exitCode, status) << options;
        EXPECT_EQ(outcome.output.find('\n') + 1, outcome.output.size()) << outcome.output;
        EXPECT_NE(outcome.output.find(reason), std::string::npos) << options << ": " << outcome.output;
        EXPECT_FALSE(std::filesystem::exists(path)) << options;
    }
    WriteFile(path, "mine");
    const CommandOutcome outcome = RunCommand(Recording("--stdin") + " </dev/null");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "record_feed: " + path + " is there already; --append goes on in it\n");
    EXPECT_EQ(ReadFile(path), "mine");
}

TEST_F(RecordFeedTest, TakesTheEndTextAsTyped)
{
    const std::pair<std::string, std::string> cases[] = {
        {"'\\r\\n\\t\\\\\\x00\\xfF'", std::string("\r\n\t\\\0\xFF", 6)},
        {"\u20AC", "\x80"},
        {"'a b'", "a b"}};
    const std::string feed = folder.Path("feed");
    for (const auto& [typed, bytes] : cases) {
        WriteFile(feed, "1" + bytes + "2" + bytes);
        EXPECT_EQ(RunCommand(Recording("--stdin --ends-with " + typed + " <" + feed)).exitCode, 0);
        EXPECT_EQ(TakeRecords(), (Texts{"1" + bytes, "2" + bytes})) << typed;
    }
}

}  // namespace
