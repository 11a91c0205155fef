#include <fstream>

#include "check_feed/feed_check.h"
#include "end_to_end/running_program.h"

/// A whole day's sample database against a real receiver.
namespace {

constexpr const char* kDatabase = DATABASES_FOLDER "/shop_day.sdd";

TEST(Replay, AReceiverGetsTheWholeDayByteForByteWithTheRecordedTimes)
{
    std::ifstream csv(SAMPLES_FOLDER "/shop_day.csv", std::ios::binary);
    const Texts feed = tools::FeedOf(csv);
    const std::string tail =
        "\x01"
        "2005-03-12 07:52:14\x02";
    const std::size_t expected = Joined(feed).size() + feed.size() * tail.size();
    Peer listener = Peer::Listening(qtLoop);
    RunningProgram program({.port = listener.PortText(), .database = kDatabase});
    program.Window().chkTransferTime.SetValue(1);
    Peer receiver = program.Connect(listener);
    for (const char* play : {"all records", "nothing more"}) {
        program.Play("1");
        EXPECT_TRUE(program.Reports({"  File Complete"})) << play;
    }
    const std::string received = receiver.Receive(expected);
    EXPECT_TRUE(received.starts_with(feed[0] + tail)) << received.substr(0, 400);
    const auto check = tools::CheckFeed(feed, received);
    EXPECT_EQ(check.records, feed.size());
    EXPECT_EQ(check.bytes, expected);
}

}  // namespace
