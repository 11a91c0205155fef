#include <gtest/gtest.h>

#include "logic/program.h"
#include "platform/failure_numbers.h"

namespace {

TEST(TransactionDatabase, IsOpenedAsItsLastThreeCharactersSay)
{
    struct Case {
        const char* path;
        const char* file;
        Texts engineCalls;
        const char* status;
    };
    const char* opened = "  Database Initialized";
    const char* refused = "  Improper File Extention";
    const std::string password = " MS Access;PWD=4073";
    for (const Case& c :
         {Case{"/data/day.Mdb", "/data/day.Mdb", {"OpenDatabase /data/day.Mdb"}, opened},
          Case{"/data/day.SDD", "/data/day.SDD", {"OpenDatabase /data/day.SDD" + password}, opened},
          Case{"/data/daysdd", "/data/daysdd", {"OpenDatabase /data/daysdd" + password}, opened},
          Case{"day.mdb", "/house/day.mdb", {"OpenDatabase /house/day.mdb"}, opened},
          Case{"/data/day.mdbx", "/data/day.mdbx", {}, refused}, Case{"/d", "/d", {}, refused},
          Case{"/data/missing.txt", "/data/day.mdb", {}, "  File Not Found"}}) {
        Program program;
        program.files.contents[c.file] = "";
        program.Load({{"Filepath", c.path}});
        EXPECT_EQ(program.TakeCalls({"engine"}), c.engineCalls) << c.path;
        EXPECT_EQ(program.TakeStatus(), Texts{c.status}) << c.path;
        EXPECT_EQ(program.txtFilePath.text, c.path);
    }
}

TEST(TransactionDatabase, AFailureIsRecordedAndKeepsTheReplayIdle)
{
    Program program;
    program.StartConnected();
    program.journal.FailOn("engine.OpenDatabase",
                           {platform::failure::kInvalidPassword, "not a valid password"});
    program.OpenFile("/data/shop.mdb");
    EXPECT_EQ(program.TakeStatus(), Texts{" Error Initializing Database"});
    EXPECT_EQ(program.TakeRecords(), Texts{"3031|not a valid password|frmConnect.InitializeDB"});
    program.WinsockConnect.state = platform::WinsockControl::kConnected;
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, Texts{});
    EXPECT_EQ(program.TakeStatus(), Texts{});
}

TEST(TransactionDatabase, OpeningAgainStartsAtTheFirstRow)
{
    Program program;
    program.StartConnected();
    program.Tick();
    program.OpenFile("/data/shop.mdb");
    program.WinsockConnect.state = platform::WinsockControl::kConnected;
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, (Texts{"first", "first"}));
}

}  // namespace
