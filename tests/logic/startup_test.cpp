#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

TEST(Startup, ShowsTheDefaultsWithoutASettingsFile)
{
    Program program;
    program.files.contents.clear();
    program.Load();
    EXPECT_EQ(program.window.caption, "Trellivan");
    EXPECT_EQ(program.txtIPAddress.text, "127.0.0.1");
    EXPECT_EQ(program.txtPortNumber.text, "5015");
    EXPECT_EQ(program.cboProtocol.items, (Texts{"TCP", "UDP", "MCAST"}));
    EXPECT_EQ(program.cboProtocol.text, "TCP");
    EXPECT_EQ(program.cboConnect.items, (Texts{"Listen", "Connect"}));
    EXPECT_EQ(program.cboConnect.text, "Connect");
    EXPECT_EQ(program.chkReconnect.value, 0);
    EXPECT_EQ(program.txtTimerInterval.text, "");
    EXPECT_EQ(program.tmrSendData.interval, 25);
    EXPECT_FALSE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeStatus(),
              (Texts{"  Config.ini is Not Found/house/Config.ini", "  File Not Found"}));
    EXPECT_EQ(program.lstStatus.selected, 1) << "the newest line";
    EXPECT_EQ(program.TakeRecords(), (Texts{"0|Config.ini File not found! |frmConnect.LoadConfigSettings"}));
}

TEST(ErrorLogLimits, ComeFromTheSettingsOrAreTheDefaults)
{
    const std::string noLimit = "1980-01-01";
    const std::tuple<const char*, const char*, int, std::string> cases[] = {
        {"", "", 2000, noLimit},
        {"3", "3", 3, "2021-05-11 15:07:09"},
        {"2.5", "2.5", 2, "2021-05-12 03:07:09"},
        {"0", "0", 0, "2021-05-14 15:07:09"},
        {"-1", "-5", -1, "2021-05-19 15:07:09"},
        {"32768", "few", 2000, noLimit},
    };
    for (const auto& [length, days, lineLimit, ageCutoff] : cases) {
        Program program;
        program.Start({{"Error_Log_Length", length}, {"Error_Log_Days", days}});
        EXPECT_EQ(program.errorLog.lineLimit, lineLimit) << length;
        EXPECT_EQ(GeneralDate(program.errorLog.ageCutoff, program.formats), ageCutoff) << days;
    }
}

TEST(ErrorLogLimits, AnAgeBeyondAllDatesIsRecordedAndNothingIsTrimmed)
{
    Program program;
    program.Start({{"Error_Log_Days", "1e9"}, {"Error_Log_Length", "0"}});
    EXPECT_EQ(program.errorLog.lineLimit, std::nullopt);
    EXPECT_EQ(program.TakeRecords(),
              Texts{"6|Overflow: the number of days 1000000000 is not between -4000000 and 4000000|"
                    "modGlobals.GlobalsMain"});
}

TEST(OpenFile, ClosesTheSocketAndStartsAtTheFirstRowOfTheChosenFile)
{
    Program program;
    program.StartConnected();
    program.Tick();
    program.files.contents["/data/other.mdb"] = "";
    program.OpenFile("/data/other.mdb");
    EXPECT_EQ(program.TakeCalls({"CommonDialogueDBFile"}),
              (Texts{"SetCancelError true", "SetFilter Database Files|*.mdb;*.sdd", "ShowOpen", "FileName"}));
    EXPECT_EQ(program.WinsockConnect.state, platform::WinsockControl::kClosed);
    EXPECT_EQ(program.txtFilePath.text, "/data/other.mdb");
    EXPECT_EQ(program.TakeStatus(), Texts{"  Database Initialized"});
    EXPECT_TRUE(program.tmrSendData.enabled);
    program.WinsockConnect.state = platform::WinsockControl::kConnected;
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, (Texts{"first", "first"}));
}

TEST(OpenFile, ARejectedFileReplacesTheConfiguredPath)
{
    Program program;
    program.Start();
    program.files.contents["/data/notes.txt"] = "";
    program.OpenFile("/data/notes.txt");
    EXPECT_EQ(program.txtFilePath.text, "/data/shop.mdb");
    program.cmdApply.OnClick();
    EXPECT_EQ((program.profile.values[{"Database File", "FilePath"}]), "/data/notes.txt");
}

}  // namespace
