#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

TEST(TransportSetUp, PreparesTheSocketForProtocolAndRole)
{
    struct Case {
        const char* protocol;
        const char* role;
        Texts calls;
        Texts status;
    };
    const Texts opened = {"  Database Initialized"};
    const Texts listening = {"  Database Initialized", "  Listening on Port 6000  "};
    const std::string host = "SetRemoteHost 239.1.2.3";
    for (const Case& c :
         {Case{"TCP", "Connect", {"State", "SetProtocol TCP", host, "SetRemotePort 6000"}, opened},
          Case{"UDP", "Connect", {"State", "SetProtocol UDP", host, "SetRemotePort 6000"}, opened},
          Case{"TCP", "Listen", {"State", "SetProtocol TCP", "SetLocalPort 6000", "Listen"}, listening},
          Case{"UDP", "Listen", {"State", "SetProtocol UDP", "Bind 6000"}, listening},
          Case{"MCAST", "Listen", {"OpenGroup 239.1.2.3 6000"}, opened}}) {
        SCOPED_TRACE(c.protocol);
        Program program;
        program.Load({{"IpAddress", "239.1.2.3"},
                      {"PortNumber", "6000"},
                      {"Connect", c.role},
                      {"Protocol", c.protocol}});
        EXPECT_EQ(program.TakeSocketCalls(), c.calls);
        EXPECT_EQ(program.TakeStatus(), c.status);
    }
}

TEST(TransportSetUp, TakesThePortAsANumber)
{
    struct Case {
        const char* port;
        const char* shown;
        Texts calls;
        Texts records;
    };
    const Texts overflow = {"6|Overflow|frmConnect.SetWinsockSettings"};
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
        EXPECT_EQ(program.TakeRecords(),
                  Texts{"10054|The peer reset the connection|frmConnect.WinsockConnect.Error"});
    }
}

TEST(ConnectionEvents, AMulticastErrorOpensTheGroupThatIsShownAnew)
{
    Program program;
    program.StartPlaying({{"Protocol", "MCAST"}});
    program.txtIPAddress.text = "239.9.9.9";
    program.chkReconnect.value = 1;
    program.MCSockConnect.OnError(10051, "unreachable");
    EXPECT_EQ(program.TakeSocketCalls(), (Texts{"CloseGroup", "OpenGroup 239.9.9.9 5015"}));
    EXPECT_EQ(program.TakeStatus(), Texts{" Error on Multicast Sock on 239.9.9.9 : 5015"});
}

}  // namespace
