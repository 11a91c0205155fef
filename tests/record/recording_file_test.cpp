#include "record/recording_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <numeric>

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

TEST_F(RecordingFileTest, IsNotMadeOrGoneOnWithWhereThatMakesNoSense)
{
    const std::tuple<const char*, OnExisting, const char*> cases[] = {
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
        std::vector<std::int32_t> refs(static_cast<std::size_t>(whole + (looksWhole ? 1 : 0) + 1));
        std::iota(refs.begin(), refs.end(), 1);
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

}  // namespace
}  // namespace record
