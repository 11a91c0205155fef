#include "make_database/database_writer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "make_database/csv_reader.h"
#include "platform/failure.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/run_command.h"
#include "support/temporary_folder.h"
#include "support/texts.h"

namespace {

using namespace tools;

/// A text of so many characters of which no two parts look alike.
std::string TextOf(std::size_t length)
{
    std::string text;
    while (text.size() < length)
        text += std::to_string(text.size()) + (text.size() % 3 == 0 ? "\r\n" : " ");
    text.resize(length);
    return text;
}

/// Whether Debian's mdbtools are installed.
bool HasMdbExport()
{
    return RunCommand("mdb-export --version").exitCode == 0;
}

/// The rows of the table `trans` as mdb-export prints them, each with its values as texts, null as "NULL" and
/// dates as "2021-05-14 15:07:09". It prints an empty memo like a null one.
std::vector<Texts> MdbExport(const std::string& database)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("t.mdb");
    WriteFile(path, database);
    std::istringstream printed(
        RunCommand("mdb-export -H -0 NULL -T '%Y-%m-%d %H:%M:%S' " + path + " trans").output);
    CsvReader csv(printed);
    std::vector<Texts> rows;
    for (CsvRecord record; csv.Next(record);) {
        rows.emplace_back();
        for (const CsvField& field : record.fields)
            rows.back().push_back(field.text);
    }
    return rows;
}

/// A second opinion on what a file holds; the tests of the program's own reader have the first.
class OtherReadersTest : public testing::TestWithParam<Format> {
protected:
    void SetUp() override
    {
        if (!HasMdbExport())
            GTEST_SKIP() << "mdb-export is not installed";
        options_.format = GetParam();
    }

    void ExpectRead(const std::vector<Receipt>& receipts, const std::vector<Texts>& rows) const
    {
        const std::vector<Texts> read = MdbExport(DatabaseBytes(receipts, options_));
        ASSERT_EQ(read.size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            ASSERT_EQ(read[i], rows[i]);
    }

    DatabaseOptions options_;
};

INSTANTIATE_TEST_SUITE_P(Formats, OtherReadersTest, testing::Values(Format::kJet3, Format::kJet4),
                         [](const auto& test) { return test.param == Format::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(OtherReadersTest, SeeReceiptsOfEveryLengthNullsAndCharactersOfTheCodePage)
{
    const std::size_t mark = GetParam() == Format::kJet4 ? 2 : 0;  // FF FE in front of compressed text
    const std::size_t row = LayoutOf(GetParam()).longValueRow;
    const std::string text = "Café €5 – ½ “Œuf” \x1B!\x20 \t end";
    std::vector<Receipt> receipts = {{7, text, 38000.75, 0.25}, {}};
    std::vector<Texts> rows = {{"7", text, "2004-01-14 18:00:00", "1899-12-30 06:00:00"},
                               {"NULL", "NULL", "NULL", "NULL"}};
    for (const std::size_t edge : {std::size_t{64}, row, 2 * (row - 4), 3 * (row - 4), std::size_t{60'000}})
        for (std::size_t size = edge - mark - 1; size <= edge - mark + 1; ++size) {
            receipts.push_back({7, TextOf(size), std::nullopt, std::nullopt});
            rows.push_back({"7", TextOf(size), "NULL", "NULL"});
        }
    options_.index = false;
    for (const bool compress : {true, false}) {
        options_.compress = compress;
        ExpectRead(receipts, rows);
    }
    ExpectRead({}, {});
}

TEST_P(OtherReadersTest, FindEveryRowAsItCameWithBothKindsOfUsageMap)
{
    // Four rows fill a page. The last page, of one row, makes the difference.
    const std::string text = TextOf(LayoutOf(GetParam()).pageSize / 4 - 70);
    const std::int32_t pages = GetParam() == Format::kJet4 ? 512 : 1024;
    options_.inlineLimit = DatabaseOptions::kMostInline;
    for (const std::int32_t count : {4 * pages, 4 * pages + 1}) {
        std::vector<Receipt> receipts;
        std::vector<Texts> rows;
        for (std::int32_t i = 0; i < count; ++i) {
            receipts.push_back({i * 7 % count - count / 2, text, {}, {}});
            rows.push_back({std::to_string(*receipts.back().ref), text, "NULL", "NULL"});
        }
        ExpectRead(receipts, rows);
    }
}

TEST(PageOutput, EndsAtTheLargestFileThatTheFormatsAllow)
{
    MemoryPages store;
    PageOutput output(store, kJet4Layout);
    for (std::uint32_t page = 0; page < 0x80000; ++page)
        ASSERT_EQ(output.Allocate(), page);
    EXPECT_EQ(FailureOf([&] { output.Allocate(); }), platform::failure::kOverflow);
}

}  // namespace
