#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

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

TEST(Interval, ThatIsRefusedStopsARunningReplayOnPlayButNotOnPause)
{
    Program program;
    program.StartConnected();
    program.txtTimerInterval.text = "-5";
    program.cmdPause.OnClick();
    EXPECT_TRUE(program.tmrSendData.enabled);
    program.cmdPlay.OnClick();
    EXPECT_FALSE(program.tmrSendData.enabled);
    EXPECT_EQ(program.TakeRecords(), (Texts{"380|A negative interval|frmConnect.cmdPause",
                                            "380|A negative interval|frmConnect.cmdPlayPause"}));
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

TEST(Clear, WithoutRecordsDoesAllTheRestAndLeavesOneRecord)
{
    const std::vector<std::pair<const char*, const char*>> cases = {{"", "91|"}, {"/data/shop.mdb", "3021|"}};
    for (const auto& [database, number] : cases) {
        Program program;
        program.engine.rows.clear();
        program.Start({{"Filepath", database}});
        program.cmdClear.OnClick();
        EXPECT_EQ(program.TakeStatus(), Texts{"  Data Reset"});
        const Texts records = program.TakeRecords();
        ASSERT_EQ(records.size(), 1U);
        EXPECT_TRUE(records[0].starts_with(number)) << records[0];
        EXPECT_TRUE(records[0].ends_with("|frmConnect.cmdClear")) << records[0];
    }
}

}  // namespace
