#include <gtest/gtest.h>

#include <algorithm>

#include "logic/program.h"

namespace {

TEST(Startup, ShowsTheDefaultsWithoutASettingsFile)
{
    Program program;
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

TEST(Startup, SetsUpTheTransportOfTheShownProtocol)
{
    struct Case {
        const char* protocol;
        bool opensGroup;
        Texts status;
    };
    for (const Case& c : {Case{"TCP", false, {"  Database Initialized", "  Listening on Port 6000  "}},
                          Case{"UDP", false, {"  Database Initialized", "  Listening on Port 6000  "}},
                          Case{"MCAST", true, {"  Database Initialized"}}}) {
        Program program;
        program.Setting("TCP/IP Settings", "IpAddress", "239.1.2.3");
        program.Setting("TCP/IP Settings", "PortNumber", "6000");
        program.Setting("TCP/IP Settings", "Connect", "Listen");
        program.Setting("TCP/IP Settings", "Protocol", c.protocol);
        program.Start();
        EXPECT_EQ(program.TakeStatus(), c.status) << c.protocol;
        EXPECT_EQ(program.WinsockConnect.state == 0, c.opensGroup) << c.protocol;
        EXPECT_EQ(program.TakeCalls("MCSockConnect"),
                  c.opensGroup ? Texts{"OpenGroup 239.1.2.3 6000"} : Texts{})
            << c.protocol;
    }
}

TEST(Startup, RecordsAPortOfTheGroupThatIsNoNumber)
{
    Program program;
    program.Setting("TCP/IP Settings", "Protocol", "MCAST");
    program.Setting("TCP/IP Settings", "PortNumber", "harbour");
    program.Start();
    EXPECT_EQ(program.TakeCalls("MCSockConnect"), Texts{});
    EXPECT_EQ(program.TakeRecordNames(), Texts{"frmConnect.Form.Load"});
}

std::string LogOfLines(int count)
{
    std::string log;
    for (int line = 1; line <= count; ++line)
        log += "line" + std::to_string(line) + "\r\n";
    return log;
}

TEST(ErrorLogLimits, ComeFromTheSettingsOrAreTheDefaults)
{
    struct Case {
        const char* length;
        int kept;
    };
    for (const Case& c : {Case{"3", 3}, Case{"2.5", 2}, Case{"0", 0}, Case{"-1", 2005}, Case{"", 2000},
                          Case{"many", 2000}, Case{"32768", 2000}}) {
        Program program;
        program.Setting("Error Log", "Error_Log_Length", c.length);
        program.files.contents["/house/Trellivan Error.log"] = LogOfLines(2005);
        program.Start();
        const std::string& log = program.files.contents["/house/Trellivan Error.log"];
        EXPECT_EQ(std::ranges::count(log, '\n'), c.kept) << c.length;
        EXPECT_TRUE(LogOfLines(2005).ends_with(log)) << c.length;
        program.files.contents.erase("/house/Trellivan Error.log");
    }
}

TEST(ErrorLogLimits, AgeCountsBackFromNow)
{
    const std::string log = "2021-05-11 a\r\n2021-05-12 b\r\n2021-05-14 c\r\n2021-05-15 d\r\nno date\r\n";
    struct Case {
        const char* days;
        const char* firstKept;
    };
    for (const Case& c : {Case{"3", "2021-05-12 b"}, Case{"2.5", "2021-05-14 c"}, Case{"0", "2021-05-15 d"},
                          Case{"-5", "no date"}, Case{"", "2021-05-11 a"}, Case{"few", "2021-05-11 a"}}) {
        Program program;
        program.Setting("Error Log", "Error_Log_Days", c.days);
        program.files.contents["/house/Trellivan Error.log"] = log;
        program.Start();
        EXPECT_EQ(program.files.contents["/house/Trellivan Error.log"], log.substr(log.find(c.firstKept)))
            << c.days;
        program.files.contents.erase("/house/Trellivan Error.log");
    }
}

TEST(ErrorLogLimits, AnAgeBeyondAllDatesIsRecordedAndNothingIsTrimmed)
{
    Program program;
    program.Setting("Error Log", "Error_Log_Days", "1e9");
    program.Setting("Error Log", "Error_Log_Length", "0");
    std::string& log = program.files.contents["/house/Trellivan Error.log"];
    log = "2021-05-11 earlier\r\n";
    program.Start();
    EXPECT_TRUE(log.starts_with("2021-05-11 earlier\r\n")) << log;
    log.erase(0, log.find('\n') + 1);
    EXPECT_EQ(program.TakeRecordNames(), Texts{"modGlobals.GlobalsMain"});
}

TEST(StatusList, HighlightsTheNewestLine)
{
    Program program;
    program.Start();
    EXPECT_EQ(program.lstStatus.selected, 0);
    program.cmdClear.OnClick();
    EXPECT_EQ(program.lstStatus.selected, 1);
    EXPECT_EQ(program.lstStatus.lines.back(), "15:07:09  Data Reset");
}

TEST(StatusList, AppendsPastTheLastSelectableLineWithARecordEach)
{
    Program program;
    program.Start();
    while (program.lstStatus.lines.size() < 32768)
        program.cmdClear.OnClick();
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
    program.CommonDialogueDBFile.choice = "/data/other.sdd";
    program.cmdOpenDialogue.OnClick();
    EXPECT_EQ(program.TakeCalls("CommonDialogueDBFile"),
              (Texts{"SetCancelError true", "SetFilter Database Files|*.mdb;*.sdd", "ShowOpen", "FileName"}));
    EXPECT_EQ(program.WinsockConnect.state, 0);
    EXPECT_EQ(program.txtFilePath.text, "/data/other.sdd");
    EXPECT_EQ(program.TakeStatus(), Texts{"  Database Initialized"});
    EXPECT_TRUE(program.tmrSendData.enabled);
}

TEST(OpenFile, CancelKeepsTheDatabaseAndLeavesOneRecord)
{
    Program program;
    program.StartConnected();
    program.cmdOpenDialogue.OnClick();
    EXPECT_EQ(program.WinsockConnect.state, 0);
    EXPECT_EQ(program.txtFilePath.text, "/data/shop.mdb");
    EXPECT_EQ(program.TakeStatus(), Texts{});
    EXPECT_EQ(program.TakeRecords(), Texts{"32755|Cancel was selected|frmConnect.cmdOpenDialogue"});
}

TEST(OpenFile, ARejectedFileReplacesTheConfiguredPath)
{
    Program program;
    program.Start();
    program.files.contents["/data/notes.txt"] = "";
    program.CommonDialogueDBFile.choice = "/data/notes.txt";
    program.cmdOpenDialogue.OnClick();
    program.TakeStatus();
    EXPECT_EQ(program.txtFilePath.text, "/data/shop.mdb");
    program.cmdApply.OnClick();
    EXPECT_EQ((program.profile.values[{"Database File", "FilePath"}]), "/data/notes.txt");
}

}  // namespace
