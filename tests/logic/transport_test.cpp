#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

TEST(ConnectionEvents, ArrivingDataOnlyMovesTheHeartbeat)
{
    Program program;
    program.StartConnected();
    program.WinsockConnect.OnDataArrival(7);
    EXPECT_EQ(program.TakeSocketCalls(), Texts{"GetData"});
    EXPECT_EQ(program.txtHeartbeat.text, "15:07:09");
}

TEST(ConnectionEvents, AnErrorPausesOnlyToReconnect)
{
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"NO", "Connect", true}, {"YES", "Connect", false}, {"YES", "Listen", true}};
    for (const auto& [reconnect, role, runsOn] : cases) {
        Program program;
        program.StartPlaying({{"Reconnect", reconnect}, {"Connect", role}});
        program.WinsockConnect.OnError(10054, "The peer reset the connection");
        EXPECT_EQ(program.tmrSendData.enabled, runsOn) << reconnect << role;
        EXPECT_EQ(program.TakeRecords(),
                  Texts{"10054|The peer reset the connection|frmConnect.WinsockConnect.Error"});
    }
}

TEST(ConnectionEvents, AnErrorSavesTheSettingsThatCountForTheNextTick)
{
    Program program;
    program.StartConnected();
    program.txtIPAddress.text = "10.0.0.9";
    program.txtPortNumber.text = "6000";
    program.txtTimerInterval.text = "77";
    program.chkReconnect.value = 1;
    program.WinsockConnect.OnError(10054, "peer");
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.WinsockConnect.Error"});
    EXPECT_EQ((program.profile.values[{"Timer", "Interval"}]), "77");
    EXPECT_EQ((program.profile.values[{"TCP/IP Settings", "Reconnect"}]), "YES");
    program.Tick();
    EXPECT_EQ(program.TakeSocketCalls(),
              (Texts{"Close", "State", "Close", "Connect 10.0.0.9 6000", "State"}));
}

TEST(ConnectionEvents, AMulticastErrorClosesTheGroupAndToReconnectOpensTheOneThatIsShown)
{
    for (const bool reconnects : {false, true}) {
        Program program;
        program.StartPlaying({{"Protocol", "MCAST"}, {"IpAddress", "239.1.2.3"}});
        program.txtIPAddress.text = "239.9.9.9";
        program.chkReconnect.value = reconnects ? 1 : 0;
        program.MCSockConnect.OnError(10051, "unreachable");
        const Texts opened = {"CloseGroup", "OpenGroup 239.9.9.9 5015"};
        EXPECT_EQ(program.TakeSocketCalls(), reconnects ? opened : Texts{"CloseGroup"});
        EXPECT_EQ(program.TakeStatus(), Texts{" Error on Multicast Sock on 239.9.9.9 : 5015"});
    }
}

}  // namespace
