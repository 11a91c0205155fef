#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

TEST(Pause, TakesTheIntervalUnlessItIsRefused)
{
    const std::pair<const char*, int> cases[] = {{"250", 250}, {"32000.5", 32000}, {"32001", 25}, {"", 25},
                                                 {"abc", 25},  {"2.5", 2},         {"3.5", 4},    {" 7 ", 7},
                                                 {"-0.5", 0},  {"-5", 25},         {"-40000", 25}};
    for (const auto& [typed, interval] : cases) {
        Program program;
        program.Start();
        program.txtTimerInterval.text = typed;
        program.cmdPause.OnClick();
        EXPECT_EQ(program.tmrSendData.interval, interval) << typed;
        const bool isNegative = program.formats.Number(typed).value_or(0) < -0.5;
        EXPECT_EQ(program.TakeRecordNames(), Texts(isNegative ? 1 : 0, "frmConnect.cmdPause")) << typed;
    }
}

TEST(Pause, ThatIsRefusedLetsTheReplayRunOnWherePlayStopsIt)
{
    Program program;
    program.StartConnected();
    program.txtTimerInterval.text = "-40000";
    program.cmdPause.OnClick();
    EXPECT_TRUE(program.tmrSendData.enabled);
    program.cmdPlay.OnClick();
    EXPECT_FALSE(program.tmrSendData.enabled);
    const std::string overflow = "6|Overflow: Timer Speed -40000 is not between -32768 and 32767|";
    EXPECT_EQ(program.TakeRecords(),
              (Texts{overflow + "frmConnect.cmdPause", overflow + "frmConnect.cmdPlayPause"}));
}

TEST(Clear, RewindsEmptiesTheViewAndClosesTheSocket)
{
    Program program;
    program.StartConnected();
    program.Tick(2);
    program.cmdClear.OnClick();
    EXPECT_FALSE(program.tmrSendData.enabled);
    EXPECT_EQ(program.DataViewList.lines, Texts{});
    EXPECT_EQ(program.WinsockConnect.state, platform::WinsockControl::kClosed);
    EXPECT_EQ(program.TakeStatus(), Texts{"  Data Reset"});
    program.WinsockConnect.state = platform::WinsockControl::kConnected;
    program.Tick();
    EXPECT_EQ(program.DataViewList.lines, Texts{"first"});
    EXPECT_EQ(program.DataViewList.selected, 0);
}

TEST(Clear, WithoutRecordsLeavesOneRecord)
{
    const std::pair<const char*, const char*> cases[] = {{"", "91|No record set is open"},
                                                         {"/data/shop.mdb", "3021|No current record"}};
    for (const auto& [database, failure] : cases) {
        Program program;
        program.engine.rows.clear();
        program.Start({{"Filepath", database}});
        program.cmdClear.OnClick();
        EXPECT_EQ(program.TakeStatus(), Texts{"  Data Reset"});
        EXPECT_EQ(program.TakeRecords(), Texts{std::string(failure) + "|frmConnect.cmdClear"});
    }
}

}  // namespace
