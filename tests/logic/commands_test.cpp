#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

using platform::WinsockControl;

TEST(Interval, IsTakenByPauseUnderOneRule)
{
    struct Case {
        const char* typed;
        int interval;
        Texts records;
    };
    const Texts refused = {"frmConnect.cmdPause"};
    for (const Case& c :
         {Case{"250", 250, {}}, Case{"32000", 32000, {}}, Case{"32000.5", 32000, {}}, Case{"32001", 25, {}},
          Case{"99999999999", 25, {}}, Case{"", 25, {}}, Case{"abc", 25, {}}, Case{"2.5", 2, {}},
          Case{"3.5", 4, {}}, Case{" 7 ", 7, {}}, Case{"0", 0, {}}, Case{"-0.5", 0, {}},
          Case{"-5", 25, refused}, Case{"-40000", 25, refused}}) {
        Program program;
        program.Start();
        program.txtTimerInterval.text = c.typed;
        program.cmdPause.OnClick();
        EXPECT_EQ(program.tmrSendData.interval, c.interval) << c.typed;
        EXPECT_EQ(program.TakeRecordNames(), c.records) << c.typed;
    }
}

TEST(Play, SetsUpConnectsAndStartsTheTimer)
{
    Program program;
    program.Start();
    program.TakeStatus();
    program.journal.Clear();
    program.cmdPlay.OnClick();
    EXPECT_EQ(program.TakeCalls("WinsockConnect"),
              (Texts{"State", "State", "SetProtocol TCP", "SetRemoteHost 127.0.0.1", "SetRemotePort 5015",
                     "Close", "Connect"}));
    EXPECT_EQ(program.TakeStatus(), Texts{});
    EXPECT_TRUE(program.tmrSendData.enabled);
}

TEST(Play, ListensTwiceAndSaysSoTwice)
{
    Program program;
    program.Setting("TCP/IP Settings", "Connect", "Listen");
    program.Start();
    program.TakeStatus();
    program.journal.Clear();
    program.cmdPlay.OnClick();
    EXPECT_EQ(program.TakeCalls("WinsockConnect"), (Texts{"State", "State", "Close", "SetProtocol TCP",
                                                          "SetLocalPort 5015", "Listen", "Close", "Listen"}));
    EXPECT_EQ(program.TakeStatus(), Texts(2, "  Listening on Port 5015  "));
}

TEST(Play, OnAConnectedSocketOnlyStartsTheTimer)
{
    Program program;
    program.StartConnected();
    program.tmrSendData.enabled = false;
    program.cmdPlay.OnClick();
    EXPECT_EQ(program.TakeCalls("WinsockConnect"), Texts{"State"});
    EXPECT_EQ(program.TakeStatus(), Texts{});
    EXPECT_TRUE(program.tmrSendData.enabled);
}

TEST(Play, ARefusedIntervalStopsTheReplay)
{
    Program program;
    program.StartConnected();
    program.txtTimerInterval.text = "-5";
    program.cmdPlay.OnClick();
    EXPECT_FALSE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeRecords(), Texts{"380|A negative interval|frmConnect.cmdPlayPause"});
}

TEST(Play, AFailureToOpenTheSocketStopsTheReplay)
{
    for (const char* role : {"Connect", "Listen"}) {
        Program program;
        program.Setting("TCP/IP Settings", "Connect", role);
        program.Start();
        program.TakeStatus();
        program.tmrSendData.enabled = true;
        program.WinsockConnect.state = WinsockControl::kClosed;
        program.journal.FailOn("WinsockConnect.Close");
        program.cmdPlay.OnClick();
        EXPECT_FALSE(program.tmrSendData.enabled) << role;
        EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.cmdPlayPause"}) << role;
    }
}

TEST(Play, GoesOnAfterAFailedSetUp)
{
    Program program;
    program.Start();
    program.journal.FailOn("WinsockConnect.SetRemotePort");
    program.cmdPlay.OnClick();
    EXPECT_EQ(program.WinsockConnect.state, WinsockControl::kConnecting);
    EXPECT_TRUE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.SetWinsockSettings"});
}

TEST(Pause, ARefusedIntervalLeavesARunningReplayRunning)
{
    Program program;
    program.StartConnected();
    program.txtTimerInterval.text = "-5";
    program.cmdPause.OnClick();
    EXPECT_TRUE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.cmdPause"});
}

TEST(Pause, KeepsTheReplayPosition)
{
    Program program;
    program.StartConnected();
    program.Tick();
    program.cmdPause.OnClick();
    EXPECT_FALSE(program.tmrSendData.enabled);
    program.cmdPlay.OnClick();
    program.Tick();
    EXPECT_EQ(program.DataViewList.lines, (Texts{"first", "second"}));
}

TEST(Clear, RewindsEmptiesTheViewAndClosesTheSocket)
{
    Program program;
    program.StartConnected();
    program.Tick();
    program.Tick();
    program.cmdClear.OnClick();
    EXPECT_FALSE(program.tmrSendData.enabled);
    EXPECT_EQ(program.DataViewList.lines, Texts{});
    EXPECT_EQ(program.WinsockConnect.state, WinsockControl::kClosed);
    EXPECT_EQ(program.TakeStatus(), Texts{"  Data Reset"});
    program.cmdPlay.OnClick();
    program.WinsockConnect.state = WinsockControl::kConnected;
    program.Tick();
    EXPECT_EQ(program.DataViewList.lines, Texts{"first"});
    EXPECT_EQ(program.DataViewList.selected, 0);
}

TEST(Clear, WithoutRecordsDoesAllTheRestAndLeavesOneRecord)
{
    for (const bool withDatabase : {false, true}) {
        Program program;
        program.engine.rows.clear();
        program.Start(withDatabase);
        program.TakeStatus();
        program.cmdClear.OnClick();
        EXPECT_EQ(program.TakeStatus(), Texts{"  Data Reset"});
        const Texts records = program.TakeRecords();
        ASSERT_EQ(records.size(), 1U);
        EXPECT_TRUE(records[0].starts_with(withDatabase ? "3021|" : "91|")) << records[0];
        EXPECT_TRUE(records[0].ends_with("|frmConnect.cmdClear")) << records[0];
    }
}

}  // namespace
