#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "record/read_recording.h"
#include "support/peer.h"
#include "support/run_command.h"
#include "support/temporary_folder.h"

namespace {

/// Records of 1000 bytes with their numbers.
std::string Records(int first, int count)
{
    std::string records;
    for (int number = first; number < first + count; ++number) {
        const std::string head = std::to_string(number) + " ";
        records += head + std::string(999 - head.size(), '.') + "\n";
    }
    return records;
}

/// More than waits in memory for a receiver or a till, in bytes; little beside what the tests send.
constexpr std::size_t kMemory = std::size_t{12} << 20;

/// True for nothing but whole records of Records in ascending order.
bool AreWholeRecordsInOrder(const std::string& received)
{
    int last = -1;
    for (std::size_t at = 0; at < received.size(); at += 1000) {
        const int number = std::atoi(received.c_str() + at);
        if (number <= last || received.substr(at, 1000) != Records(number, 1))
            return false;
        last = number;
    }
    return true;
}

Peer Receiver()
{
    return Peer::Listening(noLoop, "127.0.0.1", 5016);
}

class TapTest : public testing::Test {
protected:
    ~TapTest() override
    {
        EXPECT_EQ(recorder.End(SIGTERM), 0);
        EXPECT_TRUE(Joined(PlayedTexts(path)) == sent);
    }

    static Peer Till() { return Peer::ConnectTo(noLoop, 5015); }

    void Send(Peer& till, const std::string& bytes)
    {
        till.Send(bytes);
        sent += bytes;
    }

    /// True as soon as all that was sent is in the recording.
    bool AllIsRecorded()
    {
        return noLoop.WaitFor([&] {
            return std::filesystem::file_size(path) > sent.size() && Joined(PlayedTexts(path)) == sent;
        });
    }

    TemporaryFolder folder;
    std::string path = folder.Path("day.csv");
    Peer receiver = Receiver();
    // The sanitizer keeps freed memory for a while. Where the memory is measured, that would be most of it.
    RunningCommand recorder{"ASAN_OPTIONS=quarantine_size_mb=1 exec " RECORD_FEED
                            " --port 5015 --ends-with '\\n' --forward localhost:5016 " +
                            path};
    std::string sent;
};

TEST_F(TapTest, PassesOnWhatComesAtOnceAndTheAnswersBack)
{
    Peer till = Till();
    Peer accepted = receiver.Accepted();
    Send(till, "half a rec");
    EXPECT_EQ(accepted.Receive(10), "half a rec");
    Send(till, "ord\n");
    EXPECT_EQ(accepted.Receive(4), "ord\n");
    accepted.Send("thank you");
    EXPECT_EQ(till.Receive(9), "thank you");
    till.EndSending();
    EXPECT_EQ(accepted.ReceiveAll(), "");
    accepted.Send("bye");
    EXPECT_EQ(till.Receive(3), "bye");
}

TEST_F(TapTest, TellsTheReceiverOfEachTill)
{
    for (const char* record : {"1\n", "2\n"}) {
        {
            Peer till = Till();
            Send(till, record);
        }
        EXPECT_EQ(receiver.Accepted().ReceiveAll(), record);
    }
    ASSERT_TRUE(AllIsRecorded());
}

TEST_F(TapTest, GoesOnWithAWholeRecordWhenTheReceiverIsBack)
{
    Peer till = Till();
    Peer accepted = receiver.Accepted();
    Send(till, Records(0, 2));
    EXPECT_EQ(accepted.Receive(2000), Records(0, 2));
    receiver.Close();
    accepted.Reset();
    ASSERT_TRUE(recorder.Says("is gone"));
    Send(till, Records(2, 1) + Records(3, 1).substr(0, 500));
    ASSERT_TRUE(noLoop.WaitFor([&] { return PlayedTexts(path).size() == 3; }));
    receiver = Receiver();
    accepted = receiver.Accepted();
    ASSERT_TRUE(recorder.Says("is back"));
    Send(till, Records(3, 1).substr(500) + Records(4, 2));
    EXPECT_EQ(accepted.Receive(2000), Records(4, 2));
    ASSERT_TRUE(AllIsRecorded());
}

TEST_F(TapTest, AReceiverThatWasNeverThereIsTriedAgain)
{
    receiver.Close();
    Peer till = Till();
    Send(till, Records(0, 1));
    ASSERT_TRUE(recorder.Says("tried again until it is there, the recording goes on"));
    receiver = Receiver();
    Peer accepted = receiver.Accepted();
    ASSERT_TRUE(recorder.Says("is back"));
    Send(till, Records(1, 1));
    EXPECT_EQ(accepted.Receive(1000), Records(1, 1));
    EXPECT_EQ(recorder.Said().find("did not reach"), std::string::npos);
    ASSERT_TRUE(AllIsRecorded());
}

TEST_F(TapTest, AReceiverThatStallsStopsNeitherTillNorRecordingAndMissesWholeRecords)
{
    Peer till = Till();
    Peer accepted = receiver.Accepted();
    Send(till, Records(0, 1000));
    ASSERT_TRUE(AllIsRecorded());
    const std::size_t before = recorder.ResidentBytes();
    for (int number = 1000; number < 24'000; number += 1000)
        Send(till, Records(number, 1000));
    ASSERT_TRUE(recorder.Says("takes too little; records are left out"));
    EXPECT_LT(recorder.ResidentBytes(), before + kMemory);
    till.EndSending();
    const std::string received = accepted.ReceiveAll();
    EXPECT_TRUE(received.starts_with(Records(0, 1000)));
    EXPECT_LT(received.size(), sent.size());
    EXPECT_TRUE(AreWholeRecordsInOrder(received));
}

TEST_F(TapTest, ATillThatTakesNoAnswersStopsOnlyTheReceiver)
{
    Peer till = Till();
    Peer accepted = receiver.Accepted();
    Send(till, Records(0, 1));
    ASSERT_TRUE(AllIsRecorded());
    const std::size_t before = recorder.ResidentBytes();
    constexpr std::size_t kMuch = std::size_t{100} << 20;
    EXPECT_LT(accepted.SendUntilFull(kMuch), kMuch);
    Send(till, Records(1, 1));
    EXPECT_EQ(accepted.Receive(2000), Records(0, 2));
    ASSERT_TRUE(AllIsRecorded());
    EXPECT_LT(recorder.ResidentBytes(), before + kMemory);
}

}  // namespace
