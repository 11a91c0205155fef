#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

using platform::WinsockControl;

TEST(TransportSetUp, PreparesTheSocketForProtocolAndRole)
{
    struct Case {
        const char* protocol;
        const char* role;
        Texts calls;
        Texts status;
    };
    const Texts listening = {"  Listening on Port 5015  "};
    for (const Case& c :
         {Case{"TCP",
               "Connect",
               {"State", "SetProtocol TCP", "SetRemoteHost 127.0.0.1", "SetRemotePort 5015"},
               {}},
          Case{"UDP",
               "Connect",
               {"State", "SetProtocol UDP", "SetRemoteHost 127.0.0.1", "SetRemotePort 5015"},
               {}},
          Case{"TCP", "Listen", {"State", "SetProtocol TCP", "SetLocalPort 5015", "Listen"}, listening},
          Case{"UDP", "Listen", {"State", "SetProtocol UDP", "Bind 5015"}, listening}}) {
        Program program;
        program.Setting("TCP/IP Settings", "Protocol", c.protocol);
        program.Setting("TCP/IP Settings", "Connect", c.role);
        program.Start(false);
        EXPECT_EQ(program.TakeCalls("WinsockConnect"), c.calls) << c.protocol << c.role;
        Texts status = program.TakeStatus();
        status.erase(status.begin());
        EXPECT_EQ(status, c.status) << c.protocol << c.role;
    }
}

TEST(TransportSetUp, AnEmptyAddressKeepsTheFormerOne)
{
    Program program;
    program.Start();
    program.txtIPAddress.text = "";
    program.journal.Clear();
    program.cmdPlay.OnClick();
    EXPECT_EQ(program.TakeCalls("WinsockConnect")[3], "SetRemoteHost 127.0.0.1");
    EXPECT_EQ(program.txtIPAddress.text, "");
}

TEST(TransportSetUp, APortThatIsNoNumberBecomesZero)
{
    Program program;
    program.Setting("TCP/IP Settings", "PortNumber", "harbour");
    program.Setting("TCP/IP Settings", "Connect", "Listen");
    program.Start();
    EXPECT_EQ(program.txtPortNumber.text, "0");
    EXPECT_EQ(program.TakeStatus().back(), "  Listening on Port 0  ");
}

TEST(TransportSetUp, APortWithAFractionIsRoundedButShownAsTyped)
{
    Program program;
    program.Setting("TCP/IP Settings", "PortNumber", "1.5");
    program.Setting("TCP/IP Settings", "Connect", "Listen");
    program.Start();
    EXPECT_EQ(program.TakeCalls("WinsockConnect")[2], "SetLocalPort 2");
    EXPECT_EQ(program.TakeStatus().back(), "  Listening on Port 1.5  ");
}

TEST(TransportSetUp, APortBeyond32BitsEndsItBeforeListening)
{
    Program program;
    program.Setting("TCP/IP Settings", "PortNumber", "99999999999");
    program.Setting("TCP/IP Settings", "Connect", "Listen");
    program.Start();
    EXPECT_EQ(program.TakeCalls("WinsockConnect"), (Texts{"State", "SetProtocol TCP"}));
    EXPECT_EQ(program.TakeStatus(), Texts{"  Database Initialized"});
    EXPECT_EQ(program.TakeRecords(), Texts{"6|Overflow|frmConnect.SetWinsockSettings"});
}

TEST(ConnectionEvents, ReportAConnectionInTheWordsOfTheRole)
{
    Program client;
    client.StartPlaying("TCP", "Connect");
    client.WinsockConnect.OnConnect();
    EXPECT_EQ(client.TakeStatus(), Texts{"  Connected to IP 127.0.0.1  "});
    Program server;
    server.StartPlaying("TCP", "Listen");
    server.WinsockConnect.OnConnect();
    EXPECT_EQ(server.TakeStatus(), Texts{"  Connected on Port 5015  "});
}

TEST(ConnectionEvents, ARequestEndsTheListeningAndIsAccepted)
{
    Program program;
    program.StartPlaying("TCP", "Listen");
    program.WinsockConnect.OnConnectionRequest(42);
    EXPECT_EQ(program.TakeCalls("WinsockConnect"), (Texts{"Close", "Accept 42"}));
    EXPECT_EQ(program.TakeStatus(), Texts{"  Connected to IP 127.0.0.1  on Port 5015  "});
}

TEST(ConnectionEvents, ArrivingDataOnlyMovesTheHeartbeat)
{
    Program program;
    program.StartConnected();
    program.WinsockConnect.OnDataArrival(7);
    EXPECT_EQ(program.TakeCalls("WinsockConnect"), Texts{"GetData"});
    EXPECT_EQ(program.txtHeartbeat.text, "15:07:09");
}

TEST(ConnectionEvents, ACloseOfThePeerLeavesAClientClosedAndAServerListening)
{
    Program client;
    client.StartConnected();
    client.WinsockConnect.OnClose();
    EXPECT_EQ(client.TakeCalls("WinsockConnect"), Texts{"Close"});
    EXPECT_EQ(client.TakeStatus(), Texts{"  Connection Closed"});
    EXPECT_TRUE(client.tmrSendData.enabled);

    Program server;
    server.StartPlaying("TCP", "Listen");
    server.WinsockConnect.OnClose();
    EXPECT_EQ(server.TakeCalls("WinsockConnect"), (Texts{"Close", "Listen"}));
    EXPECT_EQ(server.TakeStatus(), (Texts{"  Connection Closed", "  Listening on Port 5015  "}));
}

TEST(ConnectionEvents, AFailureToListenAgainComesAfterItsLine)
{
    Program program;
    program.StartPlaying("TCP", "Listen");
    program.journal.FailOn("WinsockConnect.Listen");
    program.WinsockConnect.OnClose();
    EXPECT_EQ(program.TakeStatus(), (Texts{"  Connection Closed", "  Listening on Port 5015  ",
                                           " Error in Closing Winsock Connection"}));
    EXPECT_FALSE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.WinsockConnect.Close"});
}

TEST(ConnectionEvents, AnErrorIsRecordedReportedRecoveredAndSaved)
{
    struct Case {
        const char* about;
        const char* role;
        bool reconnect;
        Texts calls;
        Texts status;
        bool running;
    };
    const std::string lost = "  Error Occured... Connection Lost";
    for (const Case& c : {Case{"client", "Connect", false, {"Close"}, {lost, "  Settings saved"}, true},
                          Case{"client that reconnects",
                               "Connect",
                               true,
                               {"Close", "State", "SetProtocol TCP", "SetRemoteHost 127.0.0.1",
                                "SetRemotePort 5015", "Connect"},
                               {lost, "  Reconnecting to IP 127.0.0.1  ", "  Settings saved"},
                               false},
                          Case{"server",
                               "Listen",
                               false,
                               {"Close", "Listen"},
                               {lost, "  Listening on Port 5015", "  Settings saved"},
                               true}}) {
        Program program;
        program.Setting("TCP/IP Settings", "Reconnect", c.reconnect ? "YES" : "NO");
        program.StartPlaying("TCP", c.role);
        program.txtTimerInterval.text = "77";
        program.WinsockConnect.OnError(10054, "The peer reset the connection");
        EXPECT_EQ(program.TakeCalls("WinsockConnect"), c.calls) << c.about;
        EXPECT_EQ(program.TakeStatus(), c.status) << c.about;
        EXPECT_EQ(program.tmrSendData.enabled, c.running) << c.about;
        EXPECT_EQ((program.profile.values[{"Timer", "Interval"}]), "77") << c.about;
        EXPECT_EQ(program.TakeRecords(),
                  Texts{"10054|The peer reset the connection|frmConnect.WinsockConnect.Error"})
            << c.about;
    }
}

TEST(ConnectionEvents, AMulticastErrorOpensTheGroupAgainOnlyWithReconnect)
{
    Program program;
    program.StartPlaying("MCAST", "Connect");
    program.txtIPAddress.text = "239.9.9.9";
    program.MCSockConnect.OnError(10051, "unreachable");
    EXPECT_EQ(program.TakeCalls("MCSockConnect"), Texts{"CloseGroup"});
    EXPECT_EQ(program.TakeStatus(), Texts{" Error on Multicast Sock on 239.9.9.9 : 5015"});

    program.chkReconnect.value = 1;
    program.MCSockConnect.OnError(10051, "unreachable");
    EXPECT_EQ(program.TakeCalls("MCSockConnect"), (Texts{"CloseGroup", "OpenGroup 239.9.9.9 5015"}));

    program.txtPortNumber.text = "";
    program.MCSockConnect.OnError(10051, "unreachable");
    EXPECT_EQ(program.TakeCalls("MCSockConnect"), Texts{"CloseGroup"});
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.MCSockConnect.Error"});
}

}  // namespace
