#include <gtest/gtest.h>

#include "logic/program.h"
#include "platform/failure_numbers.h"

namespace {

using platform::WinsockControl;
namespace failure = platform::failure;

TEST(Replay, SendsEveryRecordInOrderAndStopsOneTickLater)
{
    Program program;
    program.StartConnected();
    for (int tick = 0; tick < 3; ++tick)
        program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, (Texts{"first", "second", "third"}));
    EXPECT_EQ(program.DataViewList.lines, program.WinsockConnect.sent);
    EXPECT_EQ(program.DataViewList.selected, 2);
    EXPECT_EQ(program.txtDBTime.text, "2021-05-14 10:20:32");
    EXPECT_EQ(program.TakeStatus(), Texts{});
    EXPECT_TRUE(program.tmrSendData.enabled);
    program.Tick();
    EXPECT_FALSE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeStatus(), Texts{"  File Complete"});
    program.cmdPlay.OnClick();
    program.Tick();
    EXPECT_EQ(program.TakeStatus(), Texts{"  File Complete"});
}

TEST(Replay, ATickGoesThroughItsStepsInOrder)
{
    Program program;
    program.StartConnected();
    program.Tick();
    EXPECT_EQ(program.journal.Calls(),
              (Texts{"WinsockConnect.State", "TransactionSet.RecordCount", "TransactionSet.AtEOF",
                     "TransactionSet.Field rawtransaction", "DataViewList.AddItem first",
                     "chkTransferTime.Value", "WinsockConnect.SendData first",
                     "TransactionSet.Field timestamp", "txtDBTime.SetText 2021-05-14 10:20:30",
                     "DataViewList.SetListIndex 0", "TransactionSet.MoveNext"}));
}

TEST(Replay, TransferTimeAddsTheRecordedTimeOnTcpAndUdp)
{
    for (const char* protocol : {"TCP", "UDP"}) {
        Program program;
        program.engine.rows = {{{"rawtransaction", "ABC"}, {"timestamp", "10:20:30"}},
                               {{"rawtransaction", "DEF"}, {"timestamp", platform::Null{}}},
                               {{"rawtransaction", "GHI"}, {"timestamp", "10:20:31"}}};
        program.StartPlaying(protocol, "Connect");
        program.WinsockConnect.state = WinsockControl::kConnected;
        program.chkTransferTime.value = 1;
        program.Tick();
        program.Tick();
        program.chkTransferTime.value = 2;
        program.Tick();
        EXPECT_EQ(program.WinsockConnect.sent, (Texts{"ABC\x01"
                                                      "10:20:30\x02",
                                                      "DEF\x01\x02", "GHI"}));
        EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.tmrSendData"})
            << "the null time cannot be shown";
    }
}

TEST(Replay, MulticastSendsBytesAndLooksAtNoSocketState)
{
    Program program;
    program.engine.rows = {{{"rawtransaction", "\xE2\x82\xAC 5"}, {"timestamp", "a"}},
                           {{"rawtransaction", ""}, {"timestamp", "b"}},
                           {{"rawtransaction", "\xCE\xA9"}, {"timestamp", "c"}}};
    program.StartPlaying("MCAST", "Connect");
    program.chkTransferTime.value = 1;
    for (int tick = 0; tick < 3; ++tick)
        program.Tick();
    EXPECT_EQ(program.MCSockConnect.sent, Texts{"\x80 5"});
    EXPECT_EQ(program.DataViewList.lines.size(), 3U);
    EXPECT_EQ(program.txtDBTime.text, "c");
    EXPECT_EQ(program.TakeCalls("WinsockConnect"), Texts{});
    const Texts records = program.TakeRecords();
    ASSERT_EQ(records.size(), 2U);
    EXPECT_TRUE(records[0].starts_with("9|")) << records[0];
    EXPECT_TRUE(records[1].starts_with("6|")) << records[1];
}

TEST(Replay, AnUnusableSocketIsClosedOpenedAgainAndReported)
{
    struct Case {
        const char* about;
        bool reconnect;
        const char* role;
        std::int16_t stateAfterPauses;
        Texts calls;
        Texts status;
        std::size_t sent;
        bool running;
    };
    const Case cases[] = {
        {"client without reconnect",
         false,
         "Connect",
         0,
         {"State", "Close", "State", "State", "State", "State"},
         {" Error with Winsock State: 0"},
         0,
         false},
        {"client that connects",
         true,
         "Connect",
         6,
         {"State", "Close", "Connect 127.0.0.1 5015", "State"},
         {"   Connecting to "},
         0,
         true},
        {"client that is up at once",
         true,
         "Connect",
         7,
         {"State", "Close", "Connect 127.0.0.1 5015", "State", "State", "State", "SendData first"},
         {"   Connecting to "},
         1,
         true},
        {"client whose attempt failed at once",
         true,
         "Connect",
         9,
         {"State", "Close", "Connect 127.0.0.1 5015", "State", "State", "State", "State"},
         {"   Connecting to ", " Error with Winsock State: 9"},
         0,
         false},
        {"server that listens again",
         true,
         "Listen",
         2,
         {"State", "Close", "Listen", "State", "State", "State", "SendData first"},
         {"  Listening on Port 5015  "},
         1,
         true},
    };
    for (const Case& c : cases) {
        Program program;
        program.Setting("TCP/IP Settings", "Reconnect", c.reconnect ? "yes" : "no");
        program.StartPlaying("TCP", c.role);
        program.WinsockConnect.state = 8;
        int passes = 0;
        program.events.onPass = [&] {
            if (++passes == 2)
                program.WinsockConnect.state = c.stateAfterPauses;
        };
        program.Tick();
        EXPECT_EQ(passes, 2) << c.about;
        EXPECT_EQ(program.TakeCalls("WinsockConnect"), c.calls) << c.about;
        EXPECT_EQ(program.TakeStatus(), c.status) << c.about;
        EXPECT_EQ(program.DataViewList.lines.size(), c.sent) << c.about;
        EXPECT_EQ(program.tmrSendData.enabled, c.running) << c.about;
    }
}

TEST(Replay, AFailedReadOfTheStateAfterThePausesEndsTheTick)
{
    Program program;
    program.StartConnected();
    program.journal.FailOn("WinsockConnect.State");
    program.Tick();
    EXPECT_EQ(program.TakeCalls("WinsockConnect"), (Texts{"State", "Close", "State"}));
    EXPECT_TRUE(program.tmrSendData.enabled);
    EXPECT_EQ(program.DataViewList.lines, Texts{});
}

TEST(Replay, AFailedComparisonOfTheStateStopsTheReplayWithoutARecord)
{
    Program program;
    program.StartPlaying("TCP", "Connect");
    program.WinsockConnect.state = 0;
    int reads = 0;
    program.events.onPass = [&] {
        if (++reads == 2)
            program.journal.FailAt(program.journal.Calls().size() + 1);
    };
    program.Tick();
    EXPECT_EQ(program.TakeStatus(), Texts{" Error with Winsock State: 0"});
    EXPECT_FALSE(program.tmrSendData.enabled);
}

TEST(Replay, WhatIsClickedInAPauseIsNotReadAgain)
{
    Program program;
    program.Setting("TCP/IP Settings", "Reconnect", "YES");
    program.StartPlaying("TCP", "Connect");
    program.WinsockConnect.state = 0;
    int passes = 0;
    program.events.onPass = [&] {
        if (++passes == 2)
            program.cmdClear.OnClick();
    };
    program.Tick();
    EXPECT_EQ(program.TakeStatus(),
              (Texts{"   Connecting to ", "  Data Reset", " Error with Winsock State: 0"}));
    EXPECT_FALSE(program.tmrSendData.enabled);
}

TEST(Replay, AFileThatFailedToOpenInAPauseDoesNotEndTheTick)
{
    Program program;
    program.StartPlaying("TCP", "Connect");
    program.WinsockConnect.state = 0;
    int passes = 0;
    program.events.onPass = [&] {
        if (++passes == 2) {
            program.files.contents["/data/notes.txt"] = "";
            program.CommonDialogueDBFile.choice = "/data/notes.txt";
            program.cmdOpenDialogue.OnClick();
            program.WinsockConnect.state = WinsockControl::kConnected;
        }
    };
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, Texts{"first"});
    EXPECT_EQ(program.TakeStatus(), Texts{"  Improper File Extention"});
}

TEST(Replay, AnEmptyTableLetsTheTimerRunOn)
{
    Program program;
    program.engine.rows.clear();
    program.StartConnected();
    program.Tick();
    EXPECT_TRUE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeStatus(), Texts{});
    EXPECT_EQ(program.DataViewList.lines, Texts{});
}

TEST(Replay, FailedTestsOfTheRecordSetEndTheFile)
{
    for (const char* failing : {"TransactionSet.AtEOF", "TransactionSet.RecordCount"}) {
        Program program;
        program.StartConnected();
        for (int tick = 0; tick < 3; ++tick)
            program.Tick();
        program.journal.FailOn(failing);
        program.Tick();
        EXPECT_EQ(program.TakeStatus(), Texts{"  File Complete"}) << failing;
        EXPECT_FALSE(program.tmrSendData.enabled) << failing;
    }
}

TEST(Replay, AServerWithoutAPeerShowsConsumesAndRecordsEveryRecord)
{
    Program program;
    program.StartPlaying("TCP", "Listen");
    ASSERT_EQ(program.WinsockConnect.state, WinsockControl::kListening);
    program.journal.FailOn("WinsockConnect.SendData", {failure::kWrongProtocolOrState, "no peer"});
    for (int tick = 0; tick < 3; ++tick)
        program.Tick();
    EXPECT_EQ(program.DataViewList.lines, (Texts{"first", "second", "third"}));
    EXPECT_EQ(program.TakeRecords(), Texts(3, "40006|no peer|frmConnect.tmrSendData"));
}

TEST(Replay, ARecordWithoutATextIsShownEmptyAndConsumed)
{
    Program program;
    program.engine.rows = {{{"rawtransaction", platform::Null{}}, {"timestamp", "a"}},
                           {{"timestamp", "b"}},
                           {{"rawtransaction", platform::Binary{{1, 2}}}, {"timestamp", "c"}}};
    program.StartConnected();
    for (int tick = 0; tick < 3; ++tick)
        program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, Texts(3, ""));
    EXPECT_EQ(program.DataViewList.lines, Texts(3, ""));
    const Texts records = program.TakeRecords();
    ASSERT_EQ(records.size(), 3U);
    EXPECT_TRUE(records[0].starts_with("94|"));
    EXPECT_TRUE(records[1].starts_with("3265|"));
    EXPECT_TRUE(records[2].starts_with("13|"));
}

TEST(Replay, AMissingTimeColumnKeepsTheBoxAndSendsNothingWithTransferTime)
{
    Program program;
    program.engine.rows = {{{"rawtransaction", "first"}}};
    program.StartConnected();
    program.chkTransferTime.value = 1;
    program.txtDBTime.text = "earlier";
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, Texts{});
    EXPECT_EQ(program.DataViewList.lines, Texts{"first"});
    EXPECT_EQ(program.txtDBTime.text, "earlier");
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.tmrSendData"});
}

TEST(Replay, AFailedReadOfTransferTimeSendsTheTime)
{
    Program program;
    program.StartConnected();
    program.journal.FailOn("chkTransferTime.Value");
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, Texts{"first\x01"
                                                 "2021-05-14 10:20:30\x02"});
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.tmrSendData"});
}

TEST(Replay, AnSddFileShowsTheLongTimeOfItsSecondColumn)
{
    Program program;
    program.HaveDatabase("/data/shop.sdd");
    program.StartConnected();
    program.Tick();
    EXPECT_EQ(program.txtDBTime.text, "10:20:30");
}

TEST(Replay, PastTheLastSelectableLineRecordsAreStillSentWithARecordEach)
{
    Program program;
    program.engine.rows.assign(32770, {{"rawtransaction", "x"}, {"timestamp", "t"}});
    program.StartConnected();
    for (int tick = 0; tick < 32768; ++tick)
        program.Tick();
    EXPECT_EQ(program.TakeRecords(), Texts{});
    program.Tick();
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent.size(), 32770U);
    EXPECT_EQ(program.DataViewList.selected, 32767);
    EXPECT_EQ(program.TakeRecords(), Texts(2, "6|Overflow|frmConnect.tmrSendData"));
    program.Tick();
    EXPECT_EQ(program.TakeStatus(), Texts{"  File Complete"});
}

TEST(Replay, TicksWithoutADatabaseDoNothing)
{
    Program program;
    program.Start(false);
    program.TakeStatus();
    program.cmdPlay.OnClick();
    EXPECT_TRUE(program.tmrSendData.enabled);
    program.journal.Clear();
    program.Tick();
    EXPECT_EQ(program.journal.Calls(), Texts{});
}

}  // namespace
