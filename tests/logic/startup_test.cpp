#include <gtest/gtest.h>

#include <algorithm>

#include "logic/program.h"

namespace {

TEST(Startup, ShowsTheDefaultsWithoutASettingsFile)
{
    Program program;
    program.files.contents.clear();
    program.window.caption = "something else";
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
    EXPECT_EQ(program.TakeRecords(), (Texts{"0|Config.ini File not found! |frmConnect.LoadConfigSettings"}));
}

TEST(Startup, OpensTheDatabaseThenThePort)
{
    Program program;
    program.Load({{"Connect", "Listen"}});
    EXPECT_EQ(program.TakeStatus(), (Texts{"  Database Initialized", "  Listening on Port 5015  "}));
}

/// What a start with one setting of the log's limits leaves of a log.
std::string Trimmed(const char* setting, const char* value, const std::string& log)
{
    Program program;
    program.files.contents[kErrorLog] = log;
    program.Start({{setting, value}});
    return std::exchange(program.files.contents[kErrorLog], "");
}

TEST(ErrorLogLimits, ComeFromTheSettingsOrAreTheDefaults)
{
    std::string log;
    for (int line = 1; line <= 2005; ++line)
        log += "line" + std::to_string(line) + "\r\n";
    const std::vector<std::pair<const char*, int>> cases = {
        {"3", 3}, {"2.5", 2}, {"0", 0}, {"-1", 2005}, {"", 2000}, {"many", 2000}, {"32768", 2000}};
    for (const auto& [length, kept] : cases) {
        const std::string trimmed = Trimmed("Error_Log_Length", length, log);
        EXPECT_EQ(std::ranges::count(trimmed, '\n'), kept) << length;
        EXPECT_TRUE(log.ends_with(trimmed)) << length;
    }
}

TEST(ErrorLogLimits, AgeCountsBackFromNow)
{
    const std::string log =
        "1979-12-31 z\r\n2021-05-11 a\r\n2021-05-12 b\r\n2021-05-14 c\r\n2021-05-15 d\r\nno date\r\n";
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"3", "2021-05-12 b"}, {"2.5", "2021-05-14 c"}, {"0", "2021-05-15 d"},
        {"-5", "no date"},     {"", "1979-12-31 z"},    {"few", "1979-12-31 z"}};
    for (const auto& [days, firstKept] : cases)
        EXPECT_EQ(Trimmed("Error_Log_Days", days, log), log.substr(log.find(firstKept))) << days;
}

TEST(ErrorLogLimits, AnAgeBeyondAllDatesIsRecordedAndNothingIsTrimmed)
{
    const std::string earlier = "2021-05-11 earlier\r\n";
    Program program;
    std::string& log = program.files.contents[kErrorLog];
    log = earlier;
    program.Start({{"Error_Log_Days", "1e9"}, {"Error_Log_Length", "0"}});
    EXPECT_TRUE(log.starts_with(earlier)) << log;
    log.erase(0, earlier.size());
    EXPECT_EQ(program.TakeRecordNames(), Texts{"modGlobals.GlobalsMain"});
}

TEST(StatusList, HighlightsTheNewestLineUpToTheLastSelectableOne)
{
    Program program;
    program.Start();
    EXPECT_EQ(program.lstStatus.selected, 0);
    while (program.lstStatus.lines.size() < 32768)
        program.cmdClear.OnClick();
    EXPECT_EQ(program.lstStatus.selected, 32767);
    EXPECT_EQ(program.lstStatus.lines.back(), "15:07:09  Data Reset");
    EXPECT_EQ(program.TakeRecords(), Texts{});
    program.cmdClear.OnClick();
    program.cmdClear.OnClick();
    EXPECT_EQ(program.lstStatus.lines.size(), 32770U);
    EXPECT_EQ(program.lstStatus.selected, 32767);
    EXPECT_EQ(program.TakeRecords(),
              (Texts{"6|Overflow|frmConnect.StatusLine", "6|Overflow|frmConnect.StatusLine"}));
}

TEST(OpenFile, ClosesTheSocketAndOpensTheChosenFile)
{
    Program program;
    program.StartConnected();
    program.files.contents["/data/other.sdd"] = "";
    program.OpenFile("/data/other.sdd");
    EXPECT_EQ(program.TakeCalls({"CommonDialogueDBFile"}),
              (Texts{"SetCancelError true", "SetFilter Database Files|*.mdb;*.sdd", "ShowOpen", "FileName"}));
    EXPECT_EQ(program.WinsockConnect.state, platform::WinsockControl::kClosed);
    EXPECT_EQ(program.txtFilePath.text, "/data/other.sdd");
    EXPECT_EQ(program.TakeStatus(), Texts{"  Database Initialized"});
    EXPECT_TRUE(program.tmrSendData.enabled);
}

TEST(OpenFile, CancelKeepsTheDatabaseAndLeavesOneRecord)
{
    Program program;
    program.StartConnected();
    program.cmdOpenDialogue.OnClick();
    EXPECT_EQ(program.WinsockConnect.state, platform::WinsockControl::kClosed);
    EXPECT_EQ(program.txtFilePath.text, "/data/shop.mdb");
    EXPECT_EQ(program.TakeStatus(), Texts{});
    EXPECT_EQ(program.TakeRecords(), Texts{"32755|Cancel was selected|frmConnect.cmdOpenDialogue"});
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
