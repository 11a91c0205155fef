#include "end_to_end/running_program.h"

/// What becomes of a connection, and what the operator reads about it.
namespace {

constexpr std::uint16_t kPort = 5015;

const Settings kServer = {.role = "Listen"};
const std::string kConnected = "  Connected to IP 127.0.0.1  ";
const std::string kAccepted = "  Connected to IP 127.0.0.1  on Port 5015  ";
const std::string kListening = "  Listening on Port 5015  ";
const std::string kListeningAgain = "  Listening on Port 5015";  // after an error
const std::string kClosed = "  Connection Closed";
const std::string kLost = "  Error Occured... Connection Lost";
const std::string kReconnecting = "  Reconnecting to IP 127.0.0.1  ";
const std::string kSaved = "  Settings saved";
const std::string kReset = "10054|frmConnect.WinsockConnect.Error";
const std::string kRefused = "10061|frmConnect.WinsockConnect.Error";
const std::string kNoPeer = "40006|frmConnect.tmrSendData";

Peer ListeningPeer()
{
    return Peer::Listening(qtLoop, "127.0.0.1", kPort);
}

Peer ServedPeer(RunningProgram& program, const std::string& address = "127.0.0.1")
{
    Peer peer = Peer::ConnectTo(qtLoop, kPort, address);
    EXPECT_TRUE(program.Reports({kAccepted}));
    return peer;
}

TEST(ClientConnection, ALossIsReportedAndWithReconnectFollowedByANewConnection)
{
    const std::tuple<bool, bool, Texts> cases[] = {
        {false, false, {kClosed, " Error with Winsock State: 0"}},
        {false, true, {kClosed, "   Connecting to ", kConnected, "  File Complete"}},
        {true, false, {kLost, kSaved, kReset}},
        {true, true, {kLost, kReconnecting, kSaved, kConnected, kReset}},
    };
    for (const auto& [isReset, reconnects, reports] : cases) {
        Peer listener = ListeningPeer();
        RunningProgram program({.reconnect = reconnects ? "YES" : "NO"});
        Peer first = program.Connect(listener);
        program.SendRecords(1);
        EXPECT_EQ(first.Receive(3), "one");
        isReset ? first.Reset() : first.Close();
        if (!isReset)
            program.Play("50");  // the tick finds it
        EXPECT_TRUE(program.Reports(reports));
        if (reconnects) {
            Peer second = listener.Accepted();
            if (isReset)
                program.SendRecords(2);
            EXPECT_EQ(second.Receive(8), "twothree");
        }
        EXPECT_EQ(program.RecordsShown(), reconnects ? 3 : 1);
    }
}

TEST(ClientConnection, APeerThatEndsItsSideGetsWhatIsUnderWayAndTheNextOneTheRest)
{
    constexpr std::size_t kLong = 100000;  // more is under way than the system's buffers hold
    Texts records;
    for (int record = 0; record < 150; ++record)
        records.push_back(std::to_string(record) + std::string(kLong, '.'));
    Peer listener = ListeningPeer();
    RunningProgram program({.reconnect = "YES"}, records);
    Peer first = program.Connect(listener);
    program.Play("1");
    EXPECT_TRUE(qtLoop.WaitFor([&] { return program.RecordsShown() >= 75; }));
    first.EndSending();
    EXPECT_TRUE(program.Reports({kClosed, "   Connecting to ", kConnected, "  File Complete"}));
    const std::string begun = first.ReceiveAll();
    EXPECT_GE(begun.size(), 75 * kLong);
    const std::string all = Joined(records);
    Peer second = listener.Accepted();
    EXPECT_TRUE(begun + second.Receive(all.size() - begun.size()) == all);
}

TEST(ClientConnection, AttemptsFollowEachOtherUntilOneSucceedsOrTheOperatorEndsThem)
{
    for (const bool succeeds : {false, true}) {
        RunningProgram program({.reconnect = "YES"});
        program.Play();
        EXPECT_TRUE(qtLoop.WaitFor([&] { return program.LinesWaiting() >= 6; }));
        const int attempts = program.LinesWaiting() / 3 + 1;  // the last of them is under way
        Texts expected;
        for (int attempt = 0; attempt < attempts; ++attempt)
            expected.insert(expected.end(), {kLost, kReconnecting, kSaved});
        std::optional<Peer> listener;
        if (succeeds) {
            listener = ListeningPeer();
            expected.push_back(kConnected);
        } else {
            program.Window().chkReconnect.SetValue(0);
            expected.insert(expected.end(), {kLost, kSaved});
        }
        const int refused = succeeds ? attempts : attempts + 1;
        expected.insert(expected.end(), static_cast<std::size_t>(refused), kRefused);
        EXPECT_TRUE(program.Reports(expected));
    }
}

TEST(ServerConnection, ServesOnePeerAfterTheOtherHoweverTheyLeave)
{
    RunningProgram program(kServer);
    EXPECT_TRUE(program.Reports({kListening}));
    Peer first = ServedPeer(program);
    program.SendRecords(1);
    EXPECT_EQ(first.Receive(3), "one");
    EXPECT_TRUE(Peer::IsRefused(kPort)) << "nobody listens now";
    EXPECT_TRUE(program.Reports({}));
    first.Close();
    EXPECT_TRUE(program.Reports({kClosed, kListening}));

    Peer second = ServedPeer(program);
    program.SendRecords(1);
    EXPECT_EQ(second.Receive(3), "two");
    second.Reset();
    EXPECT_TRUE(program.Reports({kLost, kListeningAgain, kSaved, kReset}));

    Peer third = ServedPeer(program, "::1");
    program.SendRecords(1);
    EXPECT_EQ(third.Receive(5), "three");
}

TEST(ServerConnection, ARecordWithoutAPeerIsConsumedAndRecorded)
{
    RunningProgram program(kServer);
    EXPECT_TRUE(program.Reports({kListening}));
    program.Play("1");
    EXPECT_TRUE(program.Reports({kListening, kListening, "  File Complete", kNoPeer, kNoPeer, kNoPeer}));
    EXPECT_EQ(program.RecordsShown(), 3);
}

TEST(ServerConnection, APortThatIsTakenFailsEachWhoListens)
{
    std::optional<Peer> other = ListeningPeer();
    RunningProgram program(kServer);
    EXPECT_TRUE(program.Reports({"10048|frmConnect.SetWinsockSettings"}));
    program.Play();
    EXPECT_TRUE(program.Reports({"10048|frmConnect.SetWinsockSettings", "10048|frmConnect.cmdPlayPause"}));
    other.reset();
    program.Play();
    EXPECT_TRUE(program.Reports({kListening, kListening}));

    Peer peer = ServedPeer(program);
    other = ListeningPeer();
    peer.Close();
    EXPECT_TRUE(program.Reports({kClosed, kListening, " Error in Closing Winsock Connection",
                                 "10048|frmConnect.WinsockConnect.Close"}));

    other.reset();
    program.Play();
    EXPECT_TRUE(program.Reports({kListening, kListening}));
    peer = ServedPeer(program);
    other = ListeningPeer();
    peer.Reset();
    EXPECT_TRUE(
        program.Reports({kLost, kListeningAgain, kSaved, kReset, "10048|frmConnect.WinsockConnect.Error"}));
}

TEST(ServerConnection, PeersComeAndGoAThousandTimesWithoutLeavingAnythingBehind)
{
    RunningProgram program(kServer);
    EXPECT_TRUE(program.Reports({kListening}));
    const std::size_t before = OpenDescriptors();
    for (int time = 0; time < 1000; ++time) {
        Peer peer = Peer::ConnectTo(qtLoop, kPort);
        ASSERT_TRUE(qtLoop.WaitFor([&] { return program.LinesWaiting() == 1; }));
        peer.Close();
        ASSERT_TRUE(program.Reports({kAccepted, kClosed, kListening}));
    }
    EXPECT_TRUE(qtLoop.WaitFor([&] { return OpenDescriptors() == before; }))
        << OpenDescriptors() << " from " << before;
}

TEST(DatagramConnection, AReceiverThatStartsLateGetsTheLaterRecords)
{
    RunningProgram program({.protocol = "UDP"});
    program.SendRecords(2);
    Peer receiver = Peer::Datagrams(qtLoop, "127.0.0.1", kPort);
    program.SendRecords(1);
    EXPECT_EQ(receiver.ReceiveDatagram(), "three");
}

}  // namespace
