#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

using platform::WinsockControl;

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

TEST(Replay, TransferTimeAddsTheRecordedTimeUnlessItIsNull)
{
    Program program;
    program.engine.rows = {{{"rawtransaction", "ABC"}, {"timestamp", "10:20:30"}},
                           {{"rawtransaction", "DEF"}, {"timestamp", platform::Null{}}},
                           {{"rawtransaction", "GHI"}, {"timestamp", "10:20:31"}}};
    program.StartConnected();
    program.chkTransferTime.value = 1;
    program.Tick(2);
    program.chkTransferTime.value = 2;
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, (Texts{"ABC\x01"
                                                  "10:20:30\x02",
                                                  "DEF\x01\x02", "GHI"}));
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.tmrSendData"}) << "a null time cannot be shown";
}

TEST(Replay, MulticastSendsBytesAndLooksAtNoSocketState)
{
    Program program;
    program.engine.rows = {{{"rawtransaction", "\xE2\x82\xAC 5"}, {"timestamp", "a"}}};
    program.StartPlaying({{"Protocol", "MCAST"}, {"IpAddress", "239.1.2.3"}});
    program.chkTransferTime.value = 1;
    program.txtIPAddress.text = "239.9.9.9";
    program.txtPortNumber.text = "6000";
    program.Tick();
    EXPECT_EQ(program.TakeSocketCalls(), Texts{"SendToGroup 239.1.2.3 5015"});
    EXPECT_EQ(program.MCSockConnect.sent, Texts{"\x80 5"});
}

TEST(Replay, AListeningSocketIsLeftAloneAndLosesTheRecord)
{
    Program program;
    program.StartPlaying({{"Connect", "Listen"}});
    program.Tick();
    EXPECT_EQ(program.TakeSocketCalls(), (Texts{"State", "SendData first"}));
    EXPECT_EQ(program.DataViewList.lines, Texts{"first"});
    EXPECT_EQ(program.TakeRecords(), Texts{"40006|There is nobody to send to|frmConnect.tmrSendData"});
}

TEST(Replay, AnUnusableSocketIsClosedOpenedAgainAndReported)
{
    struct Case {
        const char* about;
        const char* reconnect;
        const char* role;
        platform::SocketState stateAfterPauses;
        Texts reopening;
        Texts status;
        bool sends;
        bool running;
    };
    const Texts connect = {"Close", "Connect 127.0.0.1 5015"};
    const Texts listen = {"Close", "Listen"};
    const std::string connecting = "   Connecting to ";
    const std::string listening = "  Listening on Port 5015  ";
    const std::string error = " Error with Winsock State: ";
    for (const Case& c :
         {Case{"not opened again",
               "NO",
               "Connect",
               WinsockControl::kClosed,
               {"Close"},
               {error + "0"},
               false,
               false},
          Case{"connecting",
               "yes",
               "Connect",
               WinsockControl::kConnecting,
               connect,
               {connecting},
               false,
               true},
          Case{"connected at once",
               "yes",
               "Connect",
               WinsockControl::kConnected,
               connect,
               {connecting},
               true,
               true},
          Case{"failed at once",
               "yes",
               "Connect",
               WinsockControl::kError,
               connect,
               {connecting, error + "9"},
               false,
               false},
          Case{"server", "yes", "Listen", WinsockControl::kListening, listen, {listening}, true, true}}) {
        SCOPED_TRACE(c.about);
        Program program;
        program.StartPlaying({{"Reconnect", c.reconnect}, {"Connect", c.role}});
        program.WinsockConnect.state = WinsockControl::kError;
        int passes = 0;
        program.events.onPass = [&] {
            if (++passes == 2)
                program.WinsockConnect.state = c.stateAfterPauses;
            else
                EXPECT_EQ(program.WinsockConnect.state, WinsockControl::kClosed);
        };
        program.Tick();
        EXPECT_EQ(passes, 2);
        Texts calls = program.TakeSocketCalls();
        std::erase(calls, "State");
        EXPECT_EQ(std::erase(calls, "SendData first"), c.sends);
        EXPECT_EQ(calls, c.reopening);
        EXPECT_EQ(program.TakeStatus(), c.status);
        EXPECT_EQ(program.tmrSendData.enabled, c.running);
        const bool waits = c.stateAfterPauses == WinsockControl::kListening;
        EXPECT_EQ(program.TakeRecordNames(), Texts(waits ? 1 : 0, "frmConnect.tmrSendData"));
    }
}

TEST(Replay, WhatIsAppliedInTheFirstPauseCountsForTheReopening)
{
    Program program;
    program.StartPlaying();
    program.WinsockConnect.state = WinsockControl::kClosed;
    int passes = 0;
    program.events.onPass = [&] {
        if (++passes == 1) {
            program.chkReconnect.value = 1;
            program.cmdApply.OnClick();
        }
    };
    program.Tick();
    EXPECT_EQ(program.TakeStatus(), (Texts{"  Data Reset", "  Settings saved", "   Connecting to "}));
}

TEST(Replay, ATestThatFailsCountsAsPassed)
{
    struct Case {
        const char* failing;
        Texts sent;
        Texts status;
        bool running;
        Texts records;
    };
    const Texts recorded = {"frmConnect.tmrSendData"};
    for (const Case& c : {Case{"WinsockConnect.State", {}, {}, true, {}},
                          Case{"TransactionSet.RecordCount", {"first"}, {}, true, recorded},
                          Case{"TransactionSet.AtEOF", {}, {"  File Complete"}, false, {}},
                          Case{"chkTransferTime.Value",
                               {"first\x01"
                                "2021-05-14 10:20:30\x02"},
                               {},
                               true,
                               recorded}}) {
        SCOPED_TRACE(c.failing);
        Program program;
        program.StartConnected();
        program.journal.FailOn(c.failing);
        program.Tick();
        EXPECT_EQ(program.WinsockConnect.sent, c.sent);
        EXPECT_EQ(program.TakeStatus(), c.status);
        EXPECT_EQ(program.tmrSendData.enabled, c.running);
        EXPECT_EQ(program.TakeRecordNames(), c.records);
    }
}

TEST(Replay, AFileThatFailedToOpenInAPauseDoesNotEndTheTick)
{
    Program program;
    program.StartPlaying();
    program.WinsockConnect.state = WinsockControl::kClosed;
    program.events.onPass = [&] {
        program.files.contents["/data/notes.txt"] = "";
        program.OpenFile("/data/notes.txt");
        program.WinsockConnect.state = WinsockControl::kConnected;
    };
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, Texts{"first"});
    EXPECT_EQ(program.TakeStatus(), Texts(2, "  Improper File Extention"));
}

TEST(Replay, LetsTheTimerRunOnWithNothingToSend)
{
    for (const char* database : {"", "/data/shop.mdb"}) {
        Program program;
        program.engine.rows.clear();
        program.StartConnected({{"Filepath", database}});
        program.Tick();
        EXPECT_TRUE(program.tmrSendData.enabled);
        EXPECT_EQ(program.TakeStatus(), Texts{});
        EXPECT_EQ(program.DataViewList.lines, Texts{});
    }
}

TEST(Replay, WhatARecordLacksIsRecordedAndTheRestOfItGoesOn)
{
    using platform::fakes::Row;
    struct Case {
        Row row;
        int transferTime;
        Texts sent;
        const char* shown;
        const char* time;
        const char* number;
    };
    for (const Case& c :
         {Case{{{"rawtransaction", platform::Null{}}, {"timestamp", "now"}}, 0, {""}, "", "now", "94|"},
          Case{{{"timestamp", "now"}}, 0, {""}, "", "now", "3265|"},
          Case{{{"rawtransaction", platform::Binary{{1}}}, {"timestamp", "now"}}, 0, {""}, "", "now", "13|"},
          Case{{{"rawtransaction", "text"}}, 0, {"text"}, "text", "earlier", "3265|"},
          Case{{{"rawtransaction", "text"}}, 1, {}, "text", "earlier", "3265|"}}) {
        SCOPED_TRACE(c.number);
        Program program;
        program.engine.rows = {c.row};
        program.StartConnected();
        program.chkTransferTime.value = c.transferTime;
        program.txtDBTime.text = "earlier";
        program.Tick();
        EXPECT_EQ(program.WinsockConnect.sent, c.sent);
        EXPECT_EQ(program.DataViewList.lines, Texts{c.shown});
        EXPECT_EQ(program.txtDBTime.text, c.time);
        const Texts records = program.TakeRecords();
        ASSERT_EQ(records.size(), 1U);
        EXPECT_TRUE(records[0].starts_with(c.number)) << records[0];
        program.Tick();
        EXPECT_EQ(program.TakeStatus(), Texts{"  File Complete"});
    }
}

TEST(Replay, AnSddFileShowsTheLongTimeOfItsSecondColumn)
{
    Program program;
    program.files.contents["/data/shop.sdd"] = "";
    program.StartConnected({{"Filepath", "/data/shop.sdd"}});
    program.Tick();
    EXPECT_EQ(program.txtDBTime.text, "10:20:30");
}

TEST(Replay, PastTheLastSelectableLineRecordsAreStillSentWithARecordEach)
{
    Program program;
    program.engine.rows.assign(32770, {{"rawtransaction", "x"}, {"timestamp", "t"}});
    program.StartConnected();
    program.Tick(32768);
    EXPECT_EQ(program.TakeRecords(), Texts{});
    program.Tick(2);
    EXPECT_EQ(program.WinsockConnect.sent.size(), 32770U);
    EXPECT_EQ(program.DataViewList.selected, 32767);
    EXPECT_EQ(program.TakeRecords(),
              (Texts{"6|Overflow|frmConnect.tmrSendData", "6|Overflow|frmConnect.tmrSendData"}));
    program.Tick();
    EXPECT_EQ(program.TakeStatus(), Texts{"  File Complete"});
}

}  // namespace
