#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "make_database/database_writer.h"
#include "support/files.h"
#include "support/run_command.h"
#include "support/temporary_folder.h"

namespace {

class MakeDatabaseTest : public testing::Test {
protected:
    MakeDatabaseTest() { WriteFile(in, "ref,rawtransaction\n2,\"two\nlines\"\n-1,\xE2\x82\xAC\n"); }

    /// Runs the program with some options, from the test's CSV to its database.
    CommandOutcome Make(const std::string& options)
    {
        return RunCommand(MAKE_DATABASE " " + options + " " + in + " " + out);
    }

    TemporaryFolder folder;
    std::string in = folder.Path("in.csv");
    std::string out = folder.Path("out.mdb");
};

TEST_F(MakeDatabaseTest, MakesWhatItsOptionsSay)
{
    const std::vector<tools::Receipt> receipts = {{2, "two\nlines", {}, {}}, {-1, "\u20AC", {}, {}}};
    const std::pair<const char*, tools::DatabaseOptions> cases[] = {
        {"", {}},
        {"--password 1 --password 4073", {.password = "4073"}},
        {"--format jet4 --no-index", {.password = "", .index = false}},
        {"--no-index --format jet3 --password 4073",
         {.format = tools::Format::kJet3, .password = "4073", .index = false}},
    };
    for (const auto& [words, options] : cases) {
        const CommandOutcome outcome = Make(words);
        EXPECT_EQ(outcome.output, "") << words;
        EXPECT_EQ(outcome.exitCode, 0) << words;
        EXPECT_TRUE(ReadFile(out) == DatabaseBytes(receipts, options)) << words;
    }
}

TEST_F(MakeDatabaseTest, SaysInOneLineWhatIsWrongAndLeavesTheFileAsItWas)
{
    const std::string usage = "; make_database --help shows the usage";
    // The message stands behind the program's name and, where it begins with a colon, the input's.
    const std::tuple<const char*, const char*, std::string, int> cases[] = {
        {"ref,rawtransaction\n5,\"a\nb\"\n1,\n\n5,\n", "", ": line 6: ref 5 stands in two rows", 1},
        {"rawtransaction,ref\n\"a\nb\",1\nc,\n", "", ": line 4: ref is empty", 1},
        {"ref,rawtransaction\n1,\xC4\x80\n", "--format jet3",
         ": line 2: the text has a character that code page 1252 lacks", 1},
        {"", "", ": cannot be read or is empty", 1},
        {"ref\n", "--password 123456789012345678901", "A password has at most 20 characters", 1},
        {"ref\n", "--format jet5", "--format: jet5 not in {jet4,jet3}" + usage, 2},
        {"ref\n", "--password", "OUT.mdb is required" + usage, 2},
        {"ref\n", "more.csv", "The following argument was not expected: " + out + usage, 2},
    };
    for (const auto& [csv, options, message, status] : cases) {
        WriteFile(in, csv);
        WriteFile(out, "earlier");
        const CommandOutcome outcome = Make(options);
        EXPECT_EQ(outcome.output, "make_database: " + (message[0] == ':' ? in : "") + message + "\n");
        EXPECT_EQ(outcome.exitCode, status);
        EXPECT_EQ(ReadFile(out), "earlier");
        EXPECT_EQ(folder.NamesBut("in.csv"), std::vector<std::string>{"out.mdb"});
    }
}

TEST(MakeDatabase, DescribesItsOptionsInLinesOf80Characters)
{
    const CommandOutcome outcome = RunCommand(MAKE_DATABASE " --help");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.output.starts_with("Usage: make_database [OPTION]... IN.csv OUT.mdb\n\n"));
    std::istringstream help(outcome.output);
    for (std::string line; std::getline(help, line);)
        EXPECT_TRUE(!line.starts_with("  --") || line.size() <= 80U) << line;
}

TEST_F(MakeDatabaseTest, ReplacesNoDevice)
{
    out = folder.Path("fifo");
    ASSERT_EQ(RunCommand("mkfifo " + out).exitCode, 0);
    const CommandOutcome outcome = Make("");
    EXPECT_EQ(outcome.output, "make_database: " + out + ": is not a file that can be replaced\n");
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(std::filesystem::is_fifo(out));
}

TEST_F(MakeDatabaseTest, LeavesOutWhatWasCutOffAtTheEndOfARecording)
{
    const std::string rows = "ref,timestamp,datetimestamp,rawtransaction\n1,,2026-05-14T15:07:09.250,\"a\"\n";
    const std::pair<const char*, const char*> cases[] = {
        {"2,2026", ": line 3: the recording ends in the middle of a record, which is left out\n"},
        {"2,,,\"b\"", ": line 3: the last line has no end; its text may lack one too\n"},
    };
    for (const auto& [tail, message] : cases) {
        WriteFile(in, rows + tail);
        const CommandOutcome outcome = Make("");
        EXPECT_EQ(outcome.output, "make_database: " + in + message);
        EXPECT_EQ(outcome.exitCode, 0);
    }
}

}  // namespace
