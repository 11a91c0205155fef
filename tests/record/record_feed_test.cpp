#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <sstream>

#include "record/read_recording.h"
#include "record/running_recorder.h"
#include "record/wire.h"
#include "support/files.h"
#include "support/run_command.h"
#include "support/temporary_folder.h"

namespace {

using Texts = std::vector<std::string>;

std::string EveryByte()
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

const Texts kRecords = {"Total\r\n\"1\"\n;;", EveryByte() + ";;", "\x80\x81\xFF\r;;", ";;"};

std::string Joined(const Texts& texts)
{
    std::string all;
    for (const std::string& text : texts)
        all += text;
    return all;
}

class RecordFeedTest : public testing::Test {
protected:
    /// True as soon as so many records are in the file.
    bool Recorded(std::size_t count)
    {
        return ComesTrue([&] { return std::filesystem::exists(path) && PlayedTexts(path).size() >= count; });
    }

    TemporaryFolder folder;
    std::string path = folder.Path("day.csv");
};

TEST_F(RecordFeedTest, RecordsATillThatConnects)
{
    RunningRecorder recorder("--port 0 --ends-with ';;' --records 4 " + path);
    EXPECT_TRUE(Wire::ConnectTo(recorder.Port()).Send(Joined(kRecords)));
    EXPECT_EQ(recorder.End(), 0) << recorder.Said();
    EXPECT_EQ(PlayedTexts(path), kRecords);
    EXPECT_TRUE(recorder.Says("4 records, " + std::to_string(Joined(kRecords).size()) + " bytes in " + path));
}

TEST_F(RecordFeedTest, ServesOneTillAtATimeAndTheNextWhenItGoes)
{
    RunningRecorder recorder("--port 0 --ends-with ';' " + path);
    Wire first = Wire::ConnectTo(recorder.Port());
    const Wire second = Wire::ConnectTo(recorder.Port());
    EXPECT_TRUE(second.Send("2;cut off"));
    EXPECT_TRUE(first.Send("1;"));
    ASSERT_TRUE(Recorded(1));
    EXPECT_TRUE(first.Send("last words"));
    first.EndSending();
    ASSERT_TRUE(Recorded(3));
    EXPECT_EQ(recorder.End(SIGTERM), 0);
    EXPECT_EQ(PlayedTexts(path), (Texts{"1;", "last words", "2;", "cut off"}));
    EXPECT_TRUE(recorder.Says("2 records without the end that was asked for"));
}

TEST_F(RecordFeedTest, ConnectsToATillUntilItIsThereAndAgainWhenItWasGone)
{
    Wire till = Wire::Listening();
    const std::uint16_t port = till.Port();
    till.Close();
    RunningRecorder recorder("--role Connect --address localhost --port " + std::to_string(port) +
                             " --ends-with ';' " + path);
    EXPECT_TRUE(recorder.Says("the connection was refused; tried again until it is there"));
    till = Wire::Listening(port);
    EXPECT_TRUE(till.Accept().Send("1;"));
    EXPECT_TRUE(till.Accept().Send("2;"));
    ASSERT_TRUE(Recorded(2));
    EXPECT_EQ(recorder.End(SIGINT), 0);
    EXPECT_EQ(PlayedTexts(path), (Texts{"1;", "2;"}));
}

TEST_F(RecordFeedTest, RecordsDatagramsEmptyOnesToo)
{
    Texts records = kRecords;
    records.emplace_back();
    records.emplace_back(65507, 'x');
    for (const char* address : {"127.0.0.1", "::1"}) {
        RunningRecorder recorder("--protocol udp --port 0 --records 6 " + path);
        for (const std::string& record : records)
            Wire::Datagrams().SendTo(address, recorder.Port(), record);
        EXPECT_EQ(recorder.End(), 0);
        EXPECT_EQ(PlayedTexts(path), records);
        std::filesystem::remove(path);
    }
}

TEST_F(RecordFeedTest, SaysHelloToATillThatSendsDatagramsToWhoeverDoes)
{
    const Wire till = Wire::Datagrams();
    RunningRecorder recorder("--protocol UDP --role Connect --address 127.0.0.1 --port " +
                             std::to_string(till.Port()) + " --records 2 " + path);
    till.ConnectToWhoeverSends();
    EXPECT_TRUE(till.Send("1"));
    EXPECT_TRUE(till.Send("2"));
    EXPECT_EQ(recorder.End(), 0);
    EXPECT_EQ(PlayedTexts(path), (Texts{"1", "2"}));
}

TEST_F(RecordFeedTest, JoinsAGroup)
{
    for (const char* group : {"239.1.2.3", "ff02::123", "ff05::123"}) {
        RunningRecorder recorder("--protocol MCAST --port 5016 --records 2 --address " + std::string(group) +
                                 " " + path);
        EXPECT_TRUE(recorder.Says(std::string("joined group ") + group + " port 5016 on lo"));
        Wire::Datagrams().SendTo("239.1.2.4", 5016, "another group");
        Wire::Datagrams().SendTo(group, 5016, "1");
        Wire::Datagrams().SendTo(group, 5016, "2");
        EXPECT_EQ(recorder.End(), 0);
        EXPECT_EQ(PlayedTexts(path), (Texts{"1", "2"})) << group;
        std::filesystem::remove(path);
    }
}

TEST_F(RecordFeedTest, ReadsStandardInputWhateverItIs)
{
    const std::string feed = folder.Path("feed");
    WriteFile(feed, Joined(kRecords) + "end");
    Texts records = kRecords;
    records.emplace_back("end");
    for (const std::string& input :
         {"cat " + feed + " |", "< " + feed, "socat -u OPEN:" + feed + " EXEC:'sh -c cat' |"}) {
        const bool isPipe = input.ends_with('|');
        const CommandOutcome outcome = RunCommand(
            (isPipe ? input : "") + RECORD_FEED " --stdin --ends-with ';;' " + path + (isPipe ? "" : input));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
        EXPECT_EQ(PlayedTexts(path), records) << input;
        std::filesystem::remove(path);
    }
    EXPECT_EQ(RunCommand(RECORD_FEED " --stdin " + path + " </dev/null").exitCode, 0);
    EXPECT_TRUE(PlayedTexts(path).empty());
}

TEST_F(RecordFeedTest, APauseEndsARecord)
{
    RunningRecorder recorder("--port 0 --gap 20 " + path);
    const Wire till = Wire::ConnectTo(recorder.Port());
    for (std::size_t count = 1; count <= 3; ++count) {
        EXPECT_TRUE(till.Send("record;"));
        ASSERT_TRUE(Recorded(count));
    }
    EXPECT_EQ(recorder.End(SIGINT), 0);
    EXPECT_EQ(PlayedTexts(path), Texts(3, "record;"));
}

TEST_F(RecordFeedTest, TakesTheTransferTimeAsTheTimestamp)
{
    RunningRecorder recorder("--port 0 --transfer-time --locale de_DE --records 5 " + path);
    EXPECT_TRUE(Wire::ConnectTo(recorder.Port())
                    .Send("A\x01"
                          "14.05.2021 15:07:09\x02"
                          "B\x01"
                          "15:07:09\x02"
                          "C\x01\x02"
                          "D\x01"
                          "noon\x02"
                          "E\x01"
                          "01.01.0050\x02"));
    EXPECT_EQ(recorder.End(), 0);
    EXPECT_EQ(PlayedTexts(path), (Texts{"A", "B", "C", "D", "E"}));
    std::string timestamps;
    std::istringstream csv(ReadFile(path));
    for (std::string line; std::getline(csv, line);)
        timestamps +=
            line.substr(line.find(',') + 1, line.find(',', line.find(',') + 1) - line.find(',') - 1) + "|";
    EXPECT_EQ(timestamps, "timestamp|2021-05-14T15:07:09|1899-12-30T15:07:09||||");
    EXPECT_TRUE(recorder.Says("the time \"noon\" cannot be read; see --locale"));
    EXPECT_TRUE(recorder.Says("2 transfer times that cannot be read"));
}

TEST_F(RecordFeedTest, TakesTheTransferTimeOfDatagrams)
{
    RunningRecorder recorder("--protocol UDP --port 0 --transfer-time --locale C --records 2 " + path);
    Wire::Datagrams().SendTo("127.0.0.1", recorder.Port(),
                             "A\x01\x02\x01"
                             "2021-05-14\x02");
    Wire::Datagrams().SendTo("127.0.0.1", recorder.Port(), "B");
    EXPECT_EQ(recorder.End(), 0);
    EXPECT_EQ(PlayedTexts(path), (Texts{"A\x01\x02", "B"}));
    EXPECT_TRUE(recorder.Says("1 record without a transfer time"));
}

TEST_F(RecordFeedTest, AKillCostsAtMostTheRecordUnderWay)
{
    std::mt19937 random(11);
    std::size_t recorded = 0;
    for (int round = 0; round < 5; ++round) {
        RunningRecorder recorder("--port 0 --append --ends-with ';' " + path);
        const Wire till = Wire::ConnectTo(recorder.Port());
        ASSERT_TRUE(till.Send("round begins;"));
        ASSERT_TRUE(Recorded(++recorded));
        std::string sent;
        for (const std::size_t most = 1 + random() % 400; sent.size() < most * 1000;)
            sent += std::string(random() % 3000, '"') + "\n\x81;";
        ASSERT_TRUE(till.Send(sent));
        EXPECT_EQ(recorder.End(SIGKILL), 128 + SIGKILL);

        const CommandOutcome made = RunCommand(MAKE_DATABASE " " + path + " " + folder.Path("day.mdb"));
        EXPECT_EQ(made.exitCode, 0) << made.output;
        const Texts texts = PlayedTexts(path);
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
    const CommandOutcome outcome =
        RunCommand("unshare -m sh -c 'mount -t tmpfs -o size=64k none " + folder.Path() +
                   " && yes 0123456789 | " RECORD_FEED " --stdin --ends-with \"\\n\" " + path +
                   "; echo status $?; " MAKE_DATABASE " " + path + " " + roomy.Path("day.mdb") +
                   " && echo made; tail -n 1 " + path + "'");
    EXPECT_NE(outcome.output.find(path + " cannot be written: No space left on device\n"), std::string::npos)
        << outcome.output;
    EXPECT_NE(outcome.output.find("records before are whole in " + path + "\n"), std::string::npos);
    EXPECT_NE(outcome.output.find("status 1\nmade\n"), std::string::npos);
    EXPECT_TRUE(outcome.output.ends_with("\"\n")) << outcome.output.substr(outcome.output.size() - 100);
}

TEST_F(RecordFeedTest, AStandardErrorThatIsClosedOrUnreadDisturbsNothing)
{
    for (const char* errors : {" 2>&-", " 2>&1 | true", " 2>/dev/full"}) {
        const CommandOutcome outcome =
            RunCommand("yes 'a;' | head -n 1000 | " RECORD_FEED " --stdin --ends-with ';' " + path + errors);
        EXPECT_EQ(outcome.exitCode, 0) << errors;
        EXPECT_EQ(PlayedTexts(path).size(), 1001U) << errors;
        EXPECT_EQ(ReadFile(path).find("record_feed"), std::string::npos) << errors;
        std::filesystem::remove(path);
    }
}

TEST_F(RecordFeedTest, EndsAfterItsTimeOrBySignalAndKeepsTheRecordUnderWay)
{
    for (const auto& [options, signal] : {std::pair("--seconds 0.5", 0), std::pair("", SIGINT),
                                          std::pair("", SIGTERM), std::pair("", SIGHUP)}) {
        RunningRecorder recorder("--port 0 --ends-with ';' " + std::string(options) + " " + path);
        const Wire till = Wire::ConnectTo(recorder.Port());
        EXPECT_TRUE(till.Send("whole;under way"));
        ASSERT_TRUE(Recorded(1));
        EXPECT_EQ(recorder.End(signal), 0);
        EXPECT_EQ(PlayedTexts(path), (Texts{"whole;", "under way"})) << signal;
        std::filesystem::remove(path);
    }
}

TEST_F(RecordFeedTest, SaysInOneLineWhatMakesNoSense)
{
    const Wire busy = Wire::Listening();
    const struct {
        std::string options;
        std::string reason;
        int status;
    } cases[] = {
        {"", "--port is missing", 2},
        {"--port 70000", "--port", 2},
        {"--port 1 --role Both", "--role", 2},
        {"--port 1 --role Connect", "--address is missing", 2},
        {"--port 0 --role Connect --address 127.0.0.1", "--port 0 is no port to go to", 2},
        {"--protocol MCAST --port 5016", "--address is missing: the group to join", 2},
        {"--protocol MCAST --port 5016 --address 127.0.0.1", "\"127.0.0.1\" is no multicast group", 2},
        {"--port 1 --address nowhere.invalid", "\"nowhere.invalid\" is no address in digits", 2},
        {"--protocol UDP --port 1 --ends-with x", "--gap and --ends-with are for streams", 2},
        {"--protocol UDP --port 1 --gap 5", "--gap and --ends-with are for streams", 2},
        {"--protocol UDP --port 1 --forward a:1", "--forward is for TCP alone", 2},
        {"--stdin --forward a:1", "--forward is for TCP alone", 2},
        {"--stdin --port 1", "--stdin", 2},
        {"--port 1 --forward a", "\"a\" is no HOST:PORT", 2},
        {"--port 1 --forward :5", "\":5\" is no HOST:PORT", 2},
        {"--port 1 --gap 0", "--gap", 2},
        {"--port 1 --gap 1.5", "--gap: 1.5 is no whole number from 1 to 86400000", 2},
        {"--port 1 --records 0", "--records", 2},
        {"--port 1 --seconds -1", "--seconds", 2},
        {"--port 1 --seconds nan", "--seconds: nan is no number that makes sense here", 2},
        {"--port 1 --ends-with ''", "--ends-with: the text is empty", 2},
        {"--protocol UDP --port 1 --ends-with ''", "--ends-with: the text is empty", 2},
        {"--port 1 --forward ''", "--forward: the text is empty", 2},
        {"--port 1 --ends-with '\\q'", "behind \\ stands n, r, t, \\ or x", 2},
        {"--port 1 --ends-with '\\x1'", "behind \\ stands n, r, t, \\ or x", 2},
        {"--port 1 --ends-with \u0416", "a character that code page 1252 lacks", 2},
        {"--port 1 --ends-with x --transfer-time", "--ends-with", 2},
        {"--stdin --locale xx_YY", "\"xx_YY\" is no locale known here", 2},
        {"--port " + std::to_string(busy.Port()), "the address is in use", 1},
    };
    for (const auto& [options, reason, status] : cases) {
        const CommandOutcome outcome = RunCommand(RECORD_FEED " " + options + " " + path + " </dev/null");
        EXPECT_EQ(outcome.exitCode, status) << options;
        EXPECT_EQ(outcome.output.find('\n') + 1, outcome.output.size()) << outcome.output;
        EXPECT_NE(outcome.output.find(reason), std::string::npos) << options << ": " << outcome.output;
        EXPECT_FALSE(std::filesystem::exists(path)) << options;
    }
    WriteFile(path, "mine");
    const CommandOutcome outcome = RunCommand(RECORD_FEED " --stdin " + path + " </dev/null");
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.output, "record_feed: " + path + " is there already; --append goes on in it\n");
    EXPECT_EQ(ReadFile(path), "mine");
}

TEST_F(RecordFeedTest, TakesTheEndTextAsTyped)
{
    const std::pair<const char*, std::string> cases[] = {
        {"'\\r\\n\\t\\\\\\x00\\xfF'", std::string("\r\n\t\\\0\xFF", 6)},
        {"\u20AC", "\x80"},
        {"'a b'", "a b"}};
    for (const auto& [typed, bytes] : cases) {
        WriteFile(folder.Path("feed"), "1" + bytes + "2" + bytes);
        const CommandOutcome outcome = RunCommand(RECORD_FEED " --stdin --ends-with " + std::string(typed) +
                                                  " " + path + " <" + folder.Path("feed"));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
        EXPECT_EQ(PlayedTexts(path), (Texts{"1" + bytes, "2" + bytes})) << typed;
        std::filesystem::remove(path);
    }
}

}  // namespace
