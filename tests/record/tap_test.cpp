#include <gtest/gtest.h>

#include <filesystem>

#include "record/read_recording.h"
#include "record/running_recorder.h"
#include "record/wire.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace {

/// Records of 1000 bytes with their numbers.
std::string Records(int first, int count)
{
    std::string records;
    for (int number = first; number < first + count; ++number) {
        const std::string head = "record " + std::to_string(number) + " ";
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
        const std::string record = received.substr(at, 1000);
        const int number = record.starts_with("record ") ? std::stoi(record.substr(7)) : -1;
        if (number <= last || record != Records(number, 1))
            return false;
        last = number;
    }
    return true;
}

class TapTest : public testing::Test {
protected:
    TapTest()
        : recorder("--port 0 --ends-with '\\n' --forward localhost:" + std::to_string(receiver.Port()) + " " +
                   path)
    {}

    ~TapTest() override
    {
        EXPECT_EQ(recorder.End(SIGTERM), 0);
        EXPECT_TRUE(PlayedRecording() == sent);
    }

    [[nodiscard]] std::string PlayedRecording() const
    {
        std::string all;
        for (const std::string& text : PlayedTexts(path))
            all += text;
        return all;
    }

    void Send(const Wire& till, const std::string& bytes)
    {
        ASSERT_TRUE(till.Send(bytes));
        sent += bytes;
    }

    /// True as soon as all that was sent is in the recording.
    bool AllIsRecorded()
    {
        return ComesTrue(
            [&] { return std::filesystem::file_size(path) > sent.size() && PlayedRecording() == sent; });
    }

    TemporaryFolder folder;
    std::string path = folder.Path("day.csv");
    Wire receiver = Wire::Listening();
    RunningRecorder recorder;
    std::string sent;
};

TEST_F(TapTest, PassesOnWhatComesAtOnceAndTheAnswersBack)
{
    const Wire till = Wire::ConnectTo(recorder.Port());
    const Wire accepted = receiver.Accept();
    Send(till, "half a rec");
    EXPECT_EQ(accepted.Receive(10), "half a rec");
    Send(till, "ord\n");
    EXPECT_EQ(accepted.Receive(4), "ord\n");
    EXPECT_TRUE(accepted.Send("thank you"));
    EXPECT_EQ(till.Receive(9), "thank you");
    till.EndSending();
    EXPECT_EQ(accepted.ReceiveAll(), "");
    EXPECT_TRUE(accepted.Send("bye"));
    EXPECT_EQ(till.Receive(3), "bye");
}

TEST_F(TapTest, TellsTheReceiverOfEachTill)
{
    for (const char* record : {"1\n", "2\n"}) {
        {
            const Wire till = Wire::ConnectTo(recorder.Port());
            Send(till, record);
        }
        EXPECT_EQ(receiver.Accept().ReceiveAll(), record);
    }
    ASSERT_TRUE(AllIsRecorded());
}

TEST_F(TapTest, GoesOnWithAWholeRecordWhenTheReceiverIsBack)
{
    const std::uint16_t port = receiver.Port();
    const Wire till = Wire::ConnectTo(recorder.Port());
    Wire accepted = receiver.Accept();
    Send(till, Records(0, 2));
    EXPECT_EQ(accepted.Receive(2000), Records(0, 2));
    receiver.Close();
    accepted.Reset();
    ASSERT_TRUE(recorder.Says("is gone"));
    Send(till, Records(2, 1) + Records(3, 1).substr(0, 500));
    ASSERT_TRUE(ComesTrue([&] { return PlayedTexts(path).size() == 3; }));
    receiver = Wire::Listening(port);
    accepted = receiver.Accept();
    ASSERT_TRUE(recorder.Says("is back"));
    Send(till, Records(3, 1).substr(500) + Records(4, 2));
    EXPECT_EQ(accepted.Receive(2000), Records(4, 2));
    ASSERT_TRUE(AllIsRecorded());
}

TEST_F(TapTest, AReceiverThatWasNeverThereIsTriedAgain)
{
    const std::uint16_t port = receiver.Port();
    receiver.Close();
    const Wire till = Wire::ConnectTo(recorder.Port());
    Send(till, Records(0, 1));
    ASSERT_TRUE(recorder.Says("tried again until it is there, the recording goes on"));
    receiver = Wire::Listening(port);
    const Wire accepted = receiver.Accept();
    ASSERT_TRUE(recorder.Says("is back"));
    Send(till, Records(1, 1));
    EXPECT_EQ(accepted.Receive(1000), Records(1, 1));
    EXPECT_TRUE(recorder.Said().find("did not reach") == std::string::npos);
    ASSERT_TRUE(AllIsRecorded());
}

TEST_F(TapTest, AReceiverThatStallsStopsNeitherTillNorRecordingAndMissesWholeRecords)
{
    const Wire till = Wire::ConnectTo(recorder.Port());
    const Wire accepted = receiver.Accept();
    Send(till, Records(0, 1000));
    ASSERT_TRUE(AllIsRecorded());
    const std::size_t before = recorder.ResidentBytes();
    for (int number = 1000; number < 30'000; number += 1000)
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
    const Wire till = Wire::ConnectTo(recorder.Port());
    const Wire accepted = receiver.Accept();
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
