#include <fstream>

#include "check_feed/feed_check.h"
#include "end_to_end/running_program.h"

/// A whole day's sample database against a real receiver.
namespace {

constexpr const char* kMdb = DATABASES_FOLDER "/shop_day.mdb";
constexpr const char* kSdd = DATABASES_FOLDER "/shop_day.sdd";

Texts SampleFeed()
{
    std::ifstream csv(SAMPLES_FOLDER "/shop_day.csv", std::ios::binary);
    return tools::FeedOf(csv);
}

/// Gives what the receiver of a whole replay over TCP gets, this many bytes.
std::string Replayed(RunningProgram& program, Peer listener, std::size_t bytes)
{
    Peer receiver = program.Connect(listener);
    for (const char* play : {"all records", "nothing more"}) {
        program.Play("1");
        EXPECT_TRUE(program.Reports({"  File Complete"})) << play;
    }
    return receiver.Receive(bytes);
}

TEST(Replay, ATcpReceiverGetsTheWholeDayByteForByte)
{
    Peer listener = Peer::Listening(qtLoop);
    RunningProgram program({.port = listener.PortText(), .database = kMdb});
    EXPECT_EQ(program.Window().txtFilePath.Text(), kMdb);
    const std::string day = Joined(SampleFeed());
    EXPECT_EQ(Replayed(program, std::move(listener), day.size()), day);
}

TEST(Replay, TransferTimePutsEachRecordedTimeBehindItsRecord)
{
    Peer listener = Peer::Listening(qtLoop);
    RunningProgram program({.port = listener.PortText(), .database = kSdd});
    program.Window().chkTransferTime.SetValue(1);
    const std::string tail =
        "\x01"
        "2005-03-12 07:52:14\x02";
    const Texts feed = SampleFeed();
    const std::size_t expected = Joined(feed).size() + feed.size() * tail.size();
    const std::string received = Replayed(program, std::move(listener), expected);
    EXPECT_TRUE(received.starts_with(feed[0] + tail)) << received.substr(0, 400);
    const auto check = tools::CheckFeed(feed, received);
    EXPECT_EQ(check.records, feed.size());
    EXPECT_EQ(check.bytes, expected);
}

}  // namespace
