#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

TEST(TransportSetUp, TakesThePortAsANumber)
{
    struct Case {
        const char* port;
        const char* shown;
        Texts calls;
        Texts records;
    };
    const Texts overflow = {
        "6|Overflow: the port 99999999999 is not between -2147483648 and 2147483647|"
        "frmConnect.SetWinsockSettings"};
    for (const Case& c : {Case{"harbour", "0", {"SetLocalPort 0", "Listen"}, {}},
                          Case{"1.5", "1.5", {"SetLocalPort 2", "Listen"}, {}},
                          Case{"99999999999", "99999999999", {}, overflow}}) {
        SCOPED_TRACE(c.port);
        Program program;
        program.Load({{"PortNumber", c.port}, {"Connect", "Listen"}});
        Texts calls = program.TakeSocketCalls();
        calls.erase(calls.begin(), calls.begin() + 2);
        EXPECT_EQ(calls, c.calls);
        EXPECT_EQ(program.txtPortNumber.text, c.shown);
        EXPECT_EQ(program.TakeRecords(), c.records);
    }
}

TEST(TransportSetUp, EndsAtTheFirstFailureAndPlayGoesOn)
{
    const std::vector<std::pair<const char*, Texts>> cases = {
        {"txtIPAddress.Text", {}},
        {"WinsockConnect.SetProtocol", {"SetProtocol TCP"}},
        {"WinsockConnect.SetRemoteHost", {"SetProtocol TCP", "SetRemoteHost 127.0.0.1"}}};
    for (const auto& [failing, calls] : cases) {
        Program program;
        program.Start();
        program.journal.FailOn(failing);
        program.cmdPlay.OnClick();
        Texts expected = {"State", "State"};
        expected.insert(expected.end(), calls.begin(), calls.end());
        expected.insert(expected.end(), {"Close", "Connect"});
        EXPECT_EQ(program.TakeSocketCalls(), expected) << failing;
        EXPECT_TRUE(program.tmrSendData.enabled);
        EXPECT_EQ(program.TakeRecords(), Texts{"5|told to fail|frmConnect.SetWinsockSettings"});
    }
}

TEST(ConnectionEvents, AFailedReconnectionIsASecondRecord)
{
    Program program;
    program.StartPlaying({{"Reconnect", "YES"}});
    program.journal.FailOn("WinsockConnect.Connect");
    program.WinsockConnect.OnError(7, "peer");
    const std::string name = "|frmConnect.WinsockConnect.Error";
    EXPECT_EQ(program.TakeRecords(), (Texts{"7|peer" + name, "5|told to fail" + name}));
}

TEST(ConnectionEvents, ArrivingDataOnlyMovesTheHeartbeat)
{
    Program program;
    program.StartConnected();
    program.WinsockConnect.OnDataArrival(7);
    EXPECT_EQ(program.TakeSocketCalls(), Texts{"GetData"});
    EXPECT_EQ(program.txtHeartbeat.text, "15:07:09");
}

TEST(ConnectionEvents, AnErrorSavesTheSettingsAndPausesOnlyToReconnect)
{
    struct Case {
        const char* reconnect;
        const char* role;
        bool runsOn;
    };
    for (const Case& c :
         {Case{"NO", "Connect", true}, Case{"YES", "Connect", false}, Case{"YES", "Listen", true}}) {
        Program program;
        program.StartPlaying({{"Reconnect", c.reconnect}, {"Connect", c.role}});
        program.txtTimerInterval.text = "77";
        program.WinsockConnect.OnError(10054, "The peer reset the connection");
        EXPECT_EQ(program.tmrSendData.enabled, c.runsOn) << c.reconnect << c.role;
        EXPECT_EQ((program.profile.values[{"Timer", "Interval"}]), "77");
        EXPECT_EQ((program.profile.values[{"TCP/IP Settings", "Reconnect"}]), c.reconnect);
        EXPECT_EQ(program.TakeRecords(),
                  Texts{"10054|The peer reset the connection|frmConnect.WinsockConnect.Error"});
    }
}

TEST(ConnectionEvents, WhatAnErrorSavedCountsForTheNextTick)
{
    const std::vector<std::pair<const char*, const char*>> cases = {{"Connect", "Connect 10.0.0.9 6000"},
                                                                    {"Listen", "Listen"}};
    for (const auto& [role, reopening] : cases) {
        Program program;
        program.StartConnected();
        program.txtIPAddress.text = "10.0.0.9";
        program.txtPortNumber.text = "6000";
        program.cboConnect.text = role;
        program.chkReconnect.value = 1;
        program.WinsockConnect.OnError(10054, "peer");
        program.TakeSocketCalls();
        program.Tick();
        Texts calls = program.TakeSocketCalls();
        std::erase(calls, "State");
        calls.resize(2);
        EXPECT_EQ(calls, (Texts{"Close", reopening}));
        Texts records = {"10054|peer|frmConnect.WinsockConnect.Error"};
        if (program.WinsockConnect.state == platform::WinsockControl::kListening)
            records.emplace_back("40006|There is nobody to send to|frmConnect.tmrSendData");
        EXPECT_EQ(program.TakeRecords(), records);
    }
}

TEST(ConnectionEvents, AMulticastErrorOpensTheGroupThatIsShownAnew)
{
    Program program;
    program.StartPlaying({{"Protocol", "MCAST"}, {"IpAddress", "239.1.2.3"}});
    program.txtIPAddress.text = "239.9.9.9";
    program.chkReconnect.value = 1;
    program.MCSockConnect.OnError(10051, "unreachable");
    EXPECT_EQ(program.TakeSocketCalls(), (Texts{"CloseGroup", "OpenGroup 239.9.9.9 5015"}));
    EXPECT_EQ(program.TakeStatus(), Texts{" Error on Multicast Sock on 239.9.9.9 : 5015"});
}

}  // namespace
