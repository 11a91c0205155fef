#include <gtest/gtest.h>

#include <QTest>
#include <filesystem>
#include <fstream>
#include <numeric>

#include "check_feed/feed_check.h"
#include "files/temporary_folder.h"
#include "sockets/event_loop.h"
#include "sockets/peer.h"
#include "trellivan.h"

/// The whole program in its real window, with the sample database, against a real receiver.
namespace {

using platform::sockets::Peer;
using platform::sockets::WaitFor;

std::vector<std::string> SampleFeed()
{
    std::ifstream csv(SAMPLES_FOLDER "/shop_day.csv", std::ios::binary);
    return tools::FeedOf(csv);
}

std::string Joined(const std::vector<std::string>& records)
{
    return std::accumulate(records.begin(), records.end(), std::string());
}

/// A folder with the sample databases and settings, and the program that was started in it.
class Replay : public testing::Test {
protected:
    void Start(const std::string& protocol, const std::string& role, const std::string& address,
               std::uint16_t port, const std::string& database = "shop_day.mdb")
    {
        for (const char* name : {"shop_day.mdb", "shop_day.sdd"})
            std::filesystem::copy(std::string(DATABASES_FOLDER "/") + name, folder.Path(name));
        Fill(folder.Path("Config.ini"),
             "[Timer]\r\nInterval=1\r\n[TCP/IP Settings]\r\nIpAddress=" + address + "\r\nPortNumber=" +
                 std::to_string(port) + "\r\nConnect=" + role + "\r\nProtocol=" + protocol +
                 "\r\nReconnect=NO\r\n[Database File]\r\nFilePath=" + database + "\r\n");
        trellivan.Start();
    }

    void Click(QAbstractButton& button) { QTest::mouseClick(&button, Qt::LeftButton); }

    void ExpectDatagrams(const std::string& protocol, const std::string& address, Peer receiver)
    {
        Start(protocol, "Connect", address, receiver.Port());
        Click(Window().cmdPlay);
        for (const std::string& record : feed)
            ASSERT_EQ(receiver.ReceiveDatagram(), record);
        EXPECT_TRUE(WaitFor([&] { return IsComplete(); }));
        EXPECT_FALSE(receiver.HasDatagram());
        EXPECT_EQ(Log(), "");
    }

    [[nodiscard]] bool IsComplete() { return StatusHas("File Complete"); }

    [[nodiscard]] bool StatusHas(const std::string& message)
    {
        return Window().lstStatus.SelectedText().find(message) != std::string::npos;
    }

    [[nodiscard]] std::string Log() const { return Content(folder.Path("Trellivan Error.log")); }

    [[nodiscard]] platform::qt::MainWindow& Window() { return trellivan.Window(); }

    TemporaryFolder folder;
    Trellivan trellivan{folder.Path(), QLocale::c()};
    const std::vector<std::string> feed = SampleFeed();
};

TEST_F(Replay, ATcpReceiverGetsTheWholeDayByteForByte)
{
    Peer listener = Peer::Listening();
    Start("TCP", "Connect", "127.0.0.1", listener.Port());
    Click(Window().cmdPlay);
    Peer receiver = listener.Accepted();
    EXPECT_TRUE(WaitFor([&] { return IsComplete(); }));
    EXPECT_EQ(receiver.Receive(Joined(feed).size()), Joined(feed));
    EXPECT_EQ(Window().txtFilePath.Text(), "shop_day.mdb");
    receiver.Send("hello");
    EXPECT_TRUE(WaitFor([&] { return !Window().txtHeartbeat.Text().empty(); }));
    EXPECT_EQ(Log(), "");
}

TEST_F(Replay, TransferTimePutsEachRecordedTimeBehindItsRecord)
{
    Peer listener = Peer::Listening();
    Start("TCP", "Connect", "127.0.0.1", listener.Port(), "shop_day.sdd");
    Window().chkTransferTime.SetValue(1);
    Click(Window().cmdPlay);
    Peer receiver = listener.Accepted();
    EXPECT_TRUE(WaitFor([&] { return IsComplete(); }));
    const std::string tail =
        "\x01"
        "2005-03-12 07:52:14\x02";
    const std::size_t expected = Joined(feed).size() + feed.size() * tail.size();
    const std::string received = receiver.Receive(expected);
    EXPECT_TRUE(received.starts_with(feed[0] + tail)) << received.substr(0, 400);
    const auto check = tools::CheckFeed(feed, received);
    EXPECT_EQ(check.records, feed.size());
    EXPECT_EQ(check.bytes, expected);
    EXPECT_EQ(Log(), "");
}

TEST_F(Replay, AServerServesThePeerThatCalls)
{
    const std::uint16_t port = Peer::Listening().Port();
    Start("TCP", "Listen", "127.0.0.1", port);
    Peer receiver = Peer::ConnectTo(port);
    EXPECT_TRUE(WaitFor([&] { return StatusHas("  Connected to IP 127.0.0.1  on Port "); }));
    Click(Window().cmdPlay);
    EXPECT_TRUE(WaitFor([&] { return IsComplete(); }));
    EXPECT_EQ(receiver.Receive(Joined(feed).size()), Joined(feed));
    EXPECT_EQ(Log(), "");
}

TEST_F(Replay, EachRecordIsOneUdpDatagram)
{
    ExpectDatagrams("UDP", "127.0.0.1", Peer::Datagrams());
}

TEST_F(Replay, EachRecordIsOneDatagramToAGroup)
{
    ExpectDatagrams("MCAST", "239.1.2.3", Peer::InGroup("239.1.2.3"));
}

TEST_F(Replay, ANobodyThatListensIsReportedAndTheReplayStops)
{
    const std::uint16_t port = Peer::Listening().Port();
    Start("TCP", "Connect", "127.0.0.1", port);
    Click(Window().cmdPlay);
    EXPECT_TRUE(WaitFor([&] { return StatusHas(" Error with Winsock State: 0"); }));
    EXPECT_NE(Log().find("|10061|"), std::string::npos) << Log();
    EXPECT_EQ(Window().DataViewList.SelectedText(), "");
}

}  // namespace
