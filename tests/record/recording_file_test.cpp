#include "record/recording_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include "record/read_recording.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace record {
namespace {

const std::string kHead = "ref,timestamp,datetimestamp,rawtransaction\n";
const std::string kRow = "1,2026-05-14T15:07:09,2026-05-14T15:07:09.250,\"A \"\"quoted\"\"\nline\"\n";

class RecordingFileTest : public testing::Test {
protected:
    static void Add(RecordingFile& file, std::string_view text)
    {
        file.Add({.ref = 0, .timestamp = {}, .datetimestamp = platform::DateTime(), .rawtransaction = text});
    }

    /// Adds a record to the file and gives the refs that it then has.
    std::vector<std::int32_t> RefsAfterGoingOn()
    {
        {
            RecordingFile file(path, OnExisting::kGoOn);
            Add(file, "new");
            file.Write();
        }
        std::vector<std::int32_t> refs;
        for (const PlayedRow& row : PlayedRows(path))
            refs.push_back(row.ref);
        EXPECT_EQ(PlayedTexts(path).back(), "new");
        return refs;
    }

    TemporaryFolder folder;
    std::string path = folder.Path("day.csv");
};

TEST_F(RecordingFileTest, KeepsARowWithItsWrite)
{
    RecordingFile file(path, OnExisting::kRefuse);
    EXPECT_EQ(ReadFile(path), kHead);
    Add(file, "a");
    Add(file, "b");
    file.Write();
    EXPECT_EQ(PlayedTexts(path), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(file.Rows(), 2U);
}

TEST_F(RecordingFileTest, IsNotMadeOrGoneOnWithWhereThatMakesNoSense)
{
    const struct {
        const char* content;
        OnExisting onExisting;
        const char* reason;
    } cases[] = {
        {"", OnExisting::kRefuse, " is there already; --append goes on in it"},
        {"Dear diary", OnExisting::kGoOn, " is no recording: line 1: unknown column: Dear diary"},
        {"ref,rawtransaction\n1,a\n", OnExisting::kGoOn, " is no recording: its columns are others"},
        {"ref,timestamp,datetimestamp,rawtransaction\n1,2,3,4\n5,,,", OnExisting::kGoOn,
         " is no recording: line 2: not a date or time like 2021-05-14 15:07:09: 2"},
    };
    for (const auto& [content, onExisting, reason] : cases) {
        WriteFile(path, content);
        EXPECT_EQ(ThrownBy([&, on = onExisting] { return RecordingFile(path, on).Rows(); }).Description(),
                  path + reason);
        EXPECT_EQ(ReadFile(path), content);
    }
    mkfifo(folder.Path("pipe").c_str(), 0600);
    EXPECT_THROW(RecordingFile(folder.Path("pipe"), OnExisting::kGoOn), WrongUsage);
    EXPECT_THROW(RecordingFile(folder.Path("no/day.csv"), OnExisting::kGoOn), platform::Failure);

    const RecordingFile file(folder.Path("new.csv"), OnExisting::kGoOn);
    EXPECT_EQ(ThrownBy([&] { return RecordingFile(file.Path(), OnExisting::kGoOn).Rows(); }).Description(),
              file.Path() + " is being recorded to by another program");
}

TEST_F(RecordingFileTest, GoesOnBehindTheGreatestRef)
{
    WriteFile(path, kHead + "7,,2026-05-14,\"a\"\n-3,,2026-05-14,\"b\"\n");
    EXPECT_EQ(RefsAfterGoingOn(), (std::vector<std::int32_t>{-3, 7, 8}));

    WriteFile(path, kHead + "2147483646,,2026-05-14,\"a\"\n");
    RecordingFile file(path, OnExisting::kGoOn);
    Add(file, "the last one there can be");
    EXPECT_THROW(Add(file, "one more"), platform::Failure);
    file.Write();
    EXPECT_EQ(PlayedRows(path).back().ref, 2147483647);
}

TEST_F(RecordingFileTest, GoesOnWhereverItWasCutOff)
{
    const std::string two =
        kHead + kRow + "2,2026-05-14T15:07:09,2026-05-14T15:07:09.999,\"\"\"x\"\"\xE2\x82\xAC\"\n";
    const std::size_t one = kHead.size() + kRow.size();
    for (std::size_t size = 0; size <= two.size(); ++size) {
        const std::string bytes = two.substr(0, size);
        WriteFile(path, bytes);
        const int whole = size == two.size() ? 2 : size >= one ? 1 : 0;
        // A text that was cut off between the two quotes that stand for one cannot be told from a whole one.
        const bool looksWhole = bytes.ends_with('"') && std::ranges::count(bytes, '"') % 2 == 0;
        std::vector<std::int32_t> refs;
        for (std::int32_t ref = 1; ref <= whole + (looksWhole ? 1 : 0) + 1; ++ref)
            refs.push_back(ref);
        EXPECT_EQ(RefsAfterGoingOn(), refs) << size;
    }
}

TEST_F(RecordingFileTest, GoesOnBehindTheZerosOfAPowerCut)
{
    for (const std::string& torn : {std::string(4096, '\0'), "2,2026-05-14T15:07" + std::string(100, '\0'),
                                    "2,,2026-05-14T15:07:09.250,\"a\"\"" + std::string(100, '\0')}) {
        WriteFile(path, kHead + kRow + torn);
        EXPECT_EQ(RefsAfterGoingOn(), (std::vector<std::int32_t>{1, 2}));
    }
}

TEST_F(RecordingFileTest, AFullDiskLeavesTheRowsThatFoundRoom)
{
    rlimit former{};
    getrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, SIG_IGN);
    const std::string text(100, 'x');
    for (const rlim_t room : {10, 43, 200, 320, 321, 500, 1000}) {
        std::filesystem::remove(path);
        const rlimit limited{.rlim_cur = room, .rlim_max = former.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
        std::uint64_t rows = 0;
        EXPECT_THROW(
            {
                RecordingFile file(path, OnExisting::kRefuse);
                try {
                    for (int i = 0; i < 3; ++i) {
                        for (int j = 0; j < 3; ++j)
                            Add(file, text);
                        file.Write();
                    }
                } catch (...) {
                    rows = file.Rows();
                    throw;
                }
            },
            platform::Failure);
        setrlimit(RLIMIT_FSIZE, &former);
        const std::uint64_t rowSize = std::string("1,,1970-01-01T00:00:00.000,\"\"\n").size() + text.size();
        EXPECT_EQ(rows, room < kHead.size() ? 0 : (room - kHead.size()) / rowSize) << room;
        ASSERT_EQ(std::filesystem::exists(path), room >= kHead.size()) << room;
        if (room >= kHead.size()) {
            EXPECT_EQ(PlayedTexts(path), std::vector<std::string>(rows, text)) << room;
        }
    }
}

}  // namespace
}  // namespace record
