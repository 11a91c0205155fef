#include "end_to_end/running_program.h"

/// What the operator reads about an entry that cannot be meant, found in the settings at the start and typed
/// before Play.
namespace {

const Settings kClient = {};
const Settings kServer = {.role = "Listen"};
const Settings kDatagrams = {.protocol = "UDP"};
const Settings kDatagramServer = {.protocol = "UDP", .role = "Listen"};
const Settings kGroup = {.protocol = "MCAST", .address = "239.1.2.3"};

const std::string kAtStart = "|frmConnect.Form.Load";
const std::string kSetUp = "|frmConnect.SetWinsockSettings";
const std::string kPlay = "|frmConnect.cmdPlayPause";
const std::string kTick = "|frmConnect.tmrSendData";

struct Case {
    const Settings& sound;
    const char* entry;
    Texts atStart;
    Texts onPlay;
    const char* interval = "0";
};

/// An attempt to connect that fails, after other records.
Texts Lost(const std::string& number, const Texts& recordsBefore = {})
{
    Texts reports = {"  Error Occured... Connection Lost", "  Settings saved"};
    reports.insert(reports.end(), recordsBefore.begin(), recordsBefore.end());
    reports.push_back(number + "|frmConnect.WinsockConnect.Error");
    return reports;
}

Texts Listening(const std::string& port, std::size_t times)
{
    return Texts(times, "  Listening on Port " + port + "  ");
}

void ExpectReports(const std::vector<Case>& cases, std::string Settings::*setting,
                   platform::window::TextBox platform::window::MainWindow::*box)
{
    for (const Case& c : cases) {
        SCOPED_TRACE(c.sound.protocol + ' ' + c.sound.role + " \"" + c.entry + '"');
        {
            RunningProgram typed(c.sound);
            EXPECT_TRUE(typed.Reports(c.sound.role == "Listen" ? Listening("5015", 1) : Texts{}));
            (typed.Window().*box).SetText(c.entry);
            typed.Play(c.interval);
            EXPECT_TRUE(typed.Reports(c.onPlay));
        }
        Settings settings = c.sound;
        settings.*setting = c.entry;
        RunningProgram saved(settings);
        EXPECT_TRUE(saved.Reports(c.atStart));
    }
}

TEST(BadPort, IsReportedAtTheStartAndOnPlay)
{
    const Texts refused = {"10049" + kPlay};
    // What the set-up refuses leaves the former port in force.
    const Texts clientKeepsFormer = Lost("10061", {"380" + kSetUp});
    const Texts serverKeepsFormer = {Listening("65536", 1)[0], "380" + kSetUp};
    const Texts neverSetUp = {"380" + kSetUp, "10049" + kPlay};
    ExpectReports({{kClient, "0", {}, refused},
                   {kClient, "", {}, refused},
                   {kClient, "1.5", {}, Lost("10061")},
                   {kClient, "65536", {"380" + kSetUp}, clientKeepsFormer},
                   {kServer, "0", Listening("0", 1), Listening("0", 2)},
                   {kServer, "letters", Listening("0", 1), Listening("0", 2)},
                   {kServer, "", Listening("5015", 1), Listening("0", 2)},
                   {kServer, "1.5", Listening("1.5", 1), Listening("1.5", 2)},
                   {kServer, "65536", {"380" + kSetUp}, serverKeepsFormer},
                   {kDatagrams, "0", {}, refused},
                   {kDatagrams, "1.5", {}, {}},
                   {kDatagrams, "65536", {"380" + kSetUp}, {"380" + kSetUp}},
                   {kDatagramServer, "0", Listening("0", 1), Listening("0", 2)},
                   {kDatagramServer, "", Listening("5015", 1), Listening("0", 2)},
                   {kDatagramServer, "65536", {"380" + kSetUp}, serverKeepsFormer},
                   {kGroup, "0", {"380" + kAtStart}, refused},
                   {kGroup, "letters", {"13" + kAtStart}, refused},
                   {kGroup, "", {}, refused},
                   {kGroup, "1.5", {}, {}},
                   {kGroup, "65536", {"380" + kAtStart}, neverSetUp}},
                  &Settings::port, &platform::window::MainWindow::txtPortNumber);
}

TEST(BadAddress, IsReportedAtTheStartAndOnPlay)
{
    const Peer listener = Peer::Listening(qtLoop, "127.0.0.1", 5015);
    const Texts unknownHost = Lost("11001");
    const Texts noGroup = {"  File Complete", "380" + kTick, "380" + kTick, "380" + kTick};
    ExpectReports({{kClient, "", {}, {"  Connected to IP 127.0.0.1  "}},
                   {kClient, " 127.0.0.1 ", {}, {"  Connected to IP  127.0.0.1   "}},
                   {kClient, "localhost", {}, {"  Connected to IP localhost  "}},
                   {kClient, "127.0. 0.1", {}, unknownHost},
                   {kClient, "no.such.host.invalid", {}, unknownHost},
                   {kDatagrams, "", {}, {"  File Complete"}, "1"},
                   {kDatagrams, " 127.0.0.1 ", {}, {"  File Complete"}, "1"},
                   {kDatagrams, "no.such.host.invalid", {}, unknownHost},
                   {kGroup, "", {"380" + kAtStart}, {"  File Complete"}, "1"},
                   {kGroup, " 239.1.2.3 ", {}, {"  File Complete"}, "1"},
                   {kGroup, "239.1. 2.3", {"380" + kAtStart}, unknownHost},
                   {kGroup, "127.0.0.1", {"380" + kAtStart}, noGroup, "1"}},
                  &Settings::address, &platform::window::MainWindow::txtIPAddress);
}

TEST(OddRecords, GoOutWholeOrAreRefusedAloneAndRecorded)
{
    const std::string longest(65507, 'x');  // that a datagram holds
    const Texts records = {"", longest, longest + 'y', "last"};
    Peer listener = Peer::Listening(qtLoop);
    RunningProgram stream({.port = listener.PortText()}, records);
    Peer peer = stream.Connect(listener);
    stream.Play("1");
    EXPECT_TRUE(stream.Reports({"  File Complete"}));
    EXPECT_EQ(peer.Receive(Joined(records).size()), Joined(records));

    Peer receiver = Peer::Datagrams(qtLoop);
    RunningProgram datagrams({.protocol = "UDP", .port = receiver.PortText()}, records);
    datagrams.Play("1");
    EXPECT_TRUE(datagrams.Reports({"  File Complete", "10040" + kTick}));
    for (const std::string& record : {std::string(), longest, std::string("last")})
        EXPECT_EQ(receiver.ReceiveDatagram(), record);

    Peer member = Peer::InGroup(qtLoop, "239.1.2.3");
    RunningProgram group({.protocol = "MCAST", .address = "239.1.2.3", .port = member.PortText()}, records);
    group.Play("1");
    EXPECT_TRUE(group.Reports({"  File Complete", "9" + kTick, "10040" + kTick}));
    for (const std::string& record : {longest, std::string("last")})
        EXPECT_EQ(member.ReceiveDatagram(), record);
}

}  // namespace
