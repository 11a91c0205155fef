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

/// What a tick makes of a socket that is unusable, and that the tick's pauses leave in a state.
struct Reopening {
    const char* reconnect;
    const char* role;
    platform::SocketState state;
    Texts calls;
    Texts status;
    bool runsOn;
};

TEST(Replay, AnUnusableSocketIsClosedOpenedAgainAndReported)
{
    using enum platform::SocketState;
    const std::string to = "Connect 127.0.0.1 5015";
    const std::string connecting = "   Connecting to ";
    const std::string error = " Error with Winsock State: ";
    const std::string listening = "  Listening on Port 5015  ";
    for (const Reopening& expected : {
             Reopening{"NO", "Connect", kClosed, {"Close"}, {error + "0"}, false},
             Reopening{"yes", "Connect", kConnecting, {"Close", to}, {connecting}, true},
             Reopening{"yes", "Connect", kConnected, {"Close", to, "SendData first"}, {connecting}, true},
             Reopening{"yes", "Connect", kError, {"Close", to}, {connecting, error + "9"}, false},
             Reopening{"yes", "Listen", kListening, {"Close", "Listen", "SendData first"}, {listening}, true},
         }) {
        SCOPED_TRACE(testing::PrintToString(expected.status));
        Program program;
        program.StartPlaying({{"Reconnect", expected.reconnect}, {"Connect", expected.role}});
        program.WinsockConnect.state = kError;
        int passes = 0;
        program.events.onPass = [&] {
            EXPECT_TRUE(++passes == 2 || program.WinsockConnect.state == kClosed);
            if (passes == 2)
                program.WinsockConnect.state = expected.state;
        };
        program.Tick();
        EXPECT_EQ(passes, 2);
        Texts calls = program.TakeSocketCalls();
        std::erase(calls, "State");
        EXPECT_EQ(calls, expected.calls);
        EXPECT_EQ(program.TakeStatus(), expected.status);
        EXPECT_EQ(program.tmrSendData.enabled, expected.runsOn);
        const std::string noPeer = "40006|There is nobody to send to|frmConnect.tmrSendData";
        EXPECT_EQ(program.TakeRecords(), Texts(expected.state == kListening ? 1 : 0, noPeer));
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
    const std::string withTime =
        "first\x01"
        "2021-05-14 10:20:30\x02";
    const std::tuple<const char*, Texts, Texts, bool> cases[] = {
        {"WinsockConnect.State", {}, {}, false},
        {"TransactionSet.RecordCount", {"first"}, {}, true},
        {"TransactionSet.AtEOF", {}, {"  File Complete"}, false},
        {"chkTransferTime.Value", {withTime}, {}, true},
    };
    for (const auto& [failing, sent, status, records] : cases) {
        Program program;
        program.StartConnected();
        program.journal.FailOn(failing);
        program.Tick();
        EXPECT_EQ(program.WinsockConnect.sent, sent) << failing;
        EXPECT_EQ(program.TakeStatus(), status) << failing;
        EXPECT_EQ(program.TakeRecordNames(), Texts(records ? 1 : 0, "frmConnect.tmrSendData"));
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
    using platform::Null;
    const std::tuple<platform::fakes::Row, int, Texts, const char*, const char*> cases[] = {
        {{{"rawtransaction", Null{}}, {"timestamp", "now"}}, 0, {""}, "now", "94|"},
        {{{"timestamp", "now"}}, 0, {""}, "now", "3265|"},
        {{{"rawtransaction", platform::Binary{{1}}}, {"timestamp", "now"}}, 0, {""}, "now", "13|"},
        {{{"rawtransaction", "text"}}, 0, {"text"}, "earlier", "3265|"},
        {{{"rawtransaction", "text"}}, 1, {}, "earlier", "3265|"},
    };
    for (const auto& [row, transferTime, sent, time, number] : cases) {
        Program program;
        program.engine.rows = {row};
        program.StartConnected();
        program.chkTransferTime.value = transferTime;
        program.txtDBTime.text = "earlier";
        program.Tick();
        EXPECT_EQ(program.WinsockConnect.sent, sent);
        EXPECT_EQ(program.DataViewList.lines.size(), 1U);
        EXPECT_EQ(program.txtDBTime.text, time);
        const Texts records = program.TakeRecords();
        ASSERT_EQ(records.size(), 1U);
        EXPECT_TRUE(records[0].starts_with(number)) << records[0];
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

}  // namespace
