#include <atomic>
#include <thread>

#include "end_to_end/running_program.h"
#include "sockets/event_loop.h"

/// A replay to peers that are slow, talk without end, or leave in the middle.
namespace {

using platform::sockets::Peer;
using platform::sockets::WaitFor;

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

Texts ManyRecords(int count, std::size_t size)
{
    Texts records;
    for (int record = 0; record < count; ++record) {
        records.push_back(std::to_string(record) + ' ');
        records.back().resize(size, '.');
    }
    return records;
}

TEST(Flow, APeerThatEndsItsSideGetsWhatIsUnderWayAndTheNextOneTheRest)
{
    constexpr std::size_t kLong = 100000;  // more is under way than the system's buffers hold
    const Texts records = ManyRecords(150, kLong);
    Peer listener = Peer::Listening();
    RunningProgram program({.port = listener.PortText(), .reconnect = "YES"}, records);
    Peer first = program.Connect(listener);
    program.Play("1");
    EXPECT_TRUE(WaitFor([&] { return program.RecordsShown() >= 75; }));
    first.EndSending();
    EXPECT_TRUE(program.Reports(
        {"  Connection Closed", "   Connecting to ", "  Connected to IP 127.0.0.1  ", "  File Complete"}));
    const std::string begun = first.ReceiveAll();
    EXPECT_GE(begun.size(), 75 * kLong);
    const std::string all = Joined(records);
    Peer second = listener.Accepted();
    EXPECT_TRUE(begun + second.Receive(all.size() - begun.size()) == all);
}

TEST(Flow, APeerThatStopsReadingHasRecordsRefusedWholeAndRecorded)
{
    const Texts records = ManyRecords(80, kMegabyte);  // the queue's 64 and more than the system holds
    Peer listener = Peer::Listening();
    RunningProgram program({.port = listener.PortText()}, records);
    Peer peer = program.Connect(listener);
    for (int tens = 0; tens < 8; ++tens)
        program.SendRecords(10);
    const std::size_t refused = program.RecordsWaiting();
    EXPECT_TRUE(program.Reports(Texts(refused, "10035|frmConnect.tmrSendData")));
    ASSERT_GE(refused, 1U);
    ASSERT_LE(refused, 80U - 64U);
    const std::string accepted = Joined({records.begin(), records.end() - static_cast<int>(refused)});
    program.Click(program.Window().cmdClear);  // closes the connection, and loses nothing of it
    EXPECT_TRUE(program.Reports({"  Data Reset"}));
    EXPECT_TRUE(peer.ReceiveAll() == accepted);
}

TEST(Flow, APeerThatTalksWithoutEndKeepsNothingFromTheReplay)
{
    const Texts records = ManyRecords(300, 100);
    Peer listener = Peer::Listening();
    RunningProgram program({.port = listener.PortText()}, records);
    Peer peer = program.Connect(listener);
    std::atomic<bool> talks = true;
    std::thread flood([&] {
        while (talks)
            peer.SendBlocking(std::string(kMegabyte, 'x'));
        peer.EndSending();
    });
    EXPECT_TRUE(WaitFor([&] { return !program.Window().txtHeartbeat.Text().empty(); }));
    program.Play("1");
    EXPECT_TRUE(WaitFor([&] { return program.LinesWaiting() == 1; }));
    talks = false;
    EXPECT_TRUE(program.Reports({"  File Complete", "  Connection Closed"}));
    flood.join();
    EXPECT_EQ(peer.ReceiveAll(), Joined(records));
}

}  // namespace
