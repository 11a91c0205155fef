#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

TEST(LoadSettings, TakesAnIntervalOrRefusesIt)
{
    const std::pair<const char*, int> cases[] = {{"32000", 32000}, {"25.5", 26}, {"24.5", 24}, {"32001", 0},
                                                 {"-32769", 0},    {"abc", 0},   {"", 0}};
    for (const auto& [text, interval] : cases) {
        const bool isTaken = interval != 0;
        Program program;
        program.Start({{"Interval", text}});
        EXPECT_EQ(program.txtTimerInterval.text, isTaken ? std::to_string(interval) : "") << text;
        EXPECT_EQ(program.tmrSendData.interval, isTaken ? interval : 25) << text;
        const std::string refused = std::string("0|Timer Interval is incorrect: ") + text +
                                    "|frmConnect.LoadConfigSettings.TimerInterval";
        EXPECT_EQ(program.TakeRecords(), Texts(isTaken ? 0 : 1, refused));
    }
}

TEST(LoadSettings, ARefusedListTextLeavesNoRecordAndHidesNoEarlierFailure)
{
    const std::pair<const char*, const char*> cases[] = {{"Connect", "  Connected to IP 239.1.2.3  "},
                                                         {"Both", "  Connected on Port 6001  "}};
    for (const auto& [role, connected] : cases) {
        Program program;
        program.tmrSendData.enabled = true;
        program.Start({{"Interval", "-5"},
                       {"Protocol", "MCAST"},
                       {"IpAddress", "239.1.2.3"},
                       {"Connect", role},
                       {"PortNumber", "6001"}});
        EXPECT_EQ(program.cboConnect.text, "Connect");
        EXPECT_FALSE(program.tmrSendData.enabled);
        EXPECT_EQ(program.TakeRecords(), Texts{"380|A negative interval|frmConnect.LoadConfigSettings"});
        program.WinsockConnect.OnConnect();
        EXPECT_EQ(program.TakeStatus(), Texts{connected});
    }
}

TEST(LoadSettings, OnlyYesTicksReconnect)
{
    const std::pair<const char*, int> cases[] = {{"YES", 1}, {"yes", 1}, {"Y", 0}, {"TRUE", 0}};
    for (const auto& [text, value] : cases) {
        Program program;
        program.Start({{"Reconnect", text}});
        EXPECT_EQ(program.chkReconnect.value, value) << text;
    }
}

TEST(Apply, ClearsThenSavesEveryEntry)
{
    Program program;
    program.StartConnected();
    program.txtTimerInterval.text = "40";
    program.txtIPAddress.text = "10.0.0.9";
    program.txtPortNumber.text = "x";
    program.cboProtocol.text = "UDP";
    program.cboConnect.text = "Listen";
    program.chkReconnect.value = 1;
    program.txtFilePath.text = "shown only";
    program.cmdApply.OnClick();
    EXPECT_EQ(program.TakeStatus(), (Texts{"  Data Reset", "  Settings saved"}));
    EXPECT_EQ(program.tmrSendData.interval, 25);
    EXPECT_EQ(program.TakeCalls({"profile"}),
              Texts{"WritePrivateProfileStringA /house/Config.ini|Timer Interval=40"
                    "|TCP/IP Settings IpAddress=10.0.0.9|TCP/IP Settings PortNumber=x"
                    "|TCP/IP Settings Protocol=UDP|TCP/IP Settings Connect=Listen"
                    "|TCP/IP Settings Reconnect=YES|Database File FilePath=/data/shop.mdb"});
}

TEST(Apply, SavesAnIntervalThatFitsNoIntegerAndRecordsIt)
{
    const std::pair<const char*, const char*> cases[] = {
        {"soon", "13|Type mismatch: Timer Speed \"soon\" is not a number"},
        {"40000", "6|Overflow: Timer Speed 40000 is not between -32768 and 32767"}};
    for (const auto& [interval, failure] : cases) {
        Program program;
        program.Start();
        program.txtTimerInterval.text = interval;
        program.cmdApply.OnClick();
        EXPECT_EQ((program.profile.values[{"Timer", "Interval"}]), interval);
        EXPECT_EQ(program.TakeStatus(), (Texts{"  Data Reset", "  Settings saved"}));
        EXPECT_EQ(program.TakeRecords(), Texts{std::string(failure) + "|frmConnect.SaveConfigSettings"});
    }
}

TEST(Apply, WithoutASettingsFileWritesNothing)
{
    Program program;
    program.Start();
    program.files.contents.erase("/house/Config.ini");
    program.cmdApply.OnClick();
    EXPECT_EQ(program.TakeStatus(), (Texts{"  Data Reset", "  Config.ini File not Found"}));
    EXPECT_EQ(program.TakeCalls({"profile"}), Texts{});
    EXPECT_EQ(program.TakeRecords(), Texts{"0||frmConnect.SaveConfigSettings"});
}

}  // namespace
