#include <gtest/gtest.h>

#include "logic/program.h"
#include "platform/failure_numbers.h"

namespace {

TEST(TransactionDatabase, IsOpenedAsItsLastThreeCharactersSay)
{
    struct Case {
        const char* path;
        Texts engineCalls;
        const char* status;
    };
    const char* opened = "  Database Initialized";
    const char* refused = "  Improper File Extention";
    for (const Case& c : {Case{"/data/shop.Mdb", {"OpenDatabase /data/shop.Mdb"}, opened},
                          Case{"/data/shop.SDD", {"OpenDatabase /data/shop.SDD MS Access;PWD=4073"}, opened},
                          Case{"/data/datasdd", {"OpenDatabase /data/datasdd MS Access;PWD=4073"}, opened},
                          Case{"shop.mdb", {"OpenDatabase /house/shop.mdb"}, opened},
                          Case{"/data/shop.mdbx", {}, refused}, Case{"/d", {}, refused}}) {
        Program program;
        program.HaveDatabase(c.path);
        program.files.contents["/house/shop.mdb"] = "";
        program.Start();
        EXPECT_EQ(program.TakeCalls("engine"), c.engineCalls) << c.path;
        EXPECT_EQ(program.TakeStatus(), Texts{c.status}) << c.path;
        EXPECT_EQ(program.txtFilePath.text, c.path);
    }
}

TEST(TransactionDatabase, AMissingFileIsReportedWhateverItsName)
{
    Program program;
    program.Setting("Database File", "Filepath", "/data/missing.txt");
    program.Start();
    EXPECT_EQ(program.TakeStatus(), Texts{"  File Not Found"});
}

TEST(TransactionDatabase, AFailureIsRecordedAndKeepsTheReplayIdle)
{
    Program program;
    program.StartConnected();
    program.journal.FailOn("engine.OpenDatabase",
                           {platform::failure::kInvalidPassword, "not a valid password"});
    program.files.contents["/data/locked.mdb"] = "";
    program.CommonDialogueDBFile.choice = "/data/locked.mdb";
    program.cmdOpenDialogue.OnClick();
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
    program.CommonDialogueDBFile.choice = "/data/shop.mdb";
    program.cmdOpenDialogue.OnClick();
    program.WinsockConnect.state = platform::WinsockControl::kConnected;
    program.Tick();
    EXPECT_EQ(program.WinsockConnect.sent, (Texts{"first", "first"}));
}

}  // namespace
