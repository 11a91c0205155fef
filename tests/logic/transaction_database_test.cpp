#include <gtest/gtest.h>

#include "logic/program.h"
#include "platform/failure.h"

namespace {

TEST(TransactionDatabase, IsOpenedAsItsLastThreeCharactersSay)
{
    const char* opened = "  Database Initialized";
    const char* refused = "  Improper File Extention";
    const std::tuple<const char*, const char*, Texts, const char*> cases[] = {
        {"/data/day.Mdb", "/data/day.Mdb", {"OpenDatabase /data/day.Mdb"}, opened},
        {"/data/daySDD", "/data/daySDD", {"OpenDatabase /data/daySDD MS Access;PWD=4073"}, opened},
        {"day.mdb", "/house/day.mdb", {"OpenDatabase /house/day.mdb"}, opened},
        {"/data/day.mdbx", "/data/day.mdbx", {}, refused},
        {"/d", "/d", {}, refused},
        {"/data/missing.txt", "/data/day.mdb", {}, "  File Not Found"},
    };
    for (const auto& [path, file, engineCalls, status] : cases) {
        Program program;
        program.files.contents[file] = "";
        program.Load({{"Filepath", path}});
        EXPECT_EQ(program.TakeCalls({"engine"}), engineCalls) << path;
        EXPECT_EQ(program.TakeStatus(), Texts{status}) << path;
        EXPECT_EQ(program.txtFilePath.text, path);
    }
}

TEST(TransactionDatabase, AFailureIsRecordedAndKeepsTheReplayIdle)
{
    const std::string error = " Error Initializing Database";
    const std::pair<const char*, Texts> cases[] = {
        {"engine.OpenDatabase", {error}},
        {"TransactionDB.OpenRecordset", {error}},
        {"txtFilePath.SetText", {"  Database Initialized", error}}};
    for (const auto& [failing, status] : cases) {
        SCOPED_TRACE(failing);
        Program program;
        program.StartConnected();
        program.journal.FailOn(failing, {platform::failure::kInvalidPassword, "not a valid password"});
        program.OpenFile("/data/shop.mdb");
        EXPECT_EQ(program.TakeStatus(), status);
        EXPECT_EQ(program.TakeRecords(), Texts{"3031|not a valid password|frmConnect.InitializeDB"});
        program.WinsockConnect.state = platform::WinsockControl::kConnected;
        program.Tick();
        EXPECT_EQ(program.WinsockConnect.sent, Texts{});
        program.cmdClear.OnClick();
        EXPECT_EQ(program.TakeCalls({"TransactionSet"}), Texts{"MoveFirst"}) << "an open set is kept";
        EXPECT_EQ(program.TakeStatus(), Texts{"  Data Reset"});
    }
}

}  // namespace
