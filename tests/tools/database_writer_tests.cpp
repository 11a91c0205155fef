#include "make_database/database_writer.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/failure.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"
#include "tools/mdb_export.h"

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

/// A second opinion on what a file holds; the tests of the program's own reader have the first.
class OtherReadersTest : public testing::TestWithParam<Format> {
protected:
    void SetUp() override
    {
        if (!HasMdbExport())
            GTEST_SKIP() << "mdb-export is not installed";
        options_.format = GetParam();
    }

    [[nodiscard]] const Layout& FileLayout() const { return LayoutOf(GetParam()); }

    DatabaseOptions options_;
};

INSTANTIATE_TEST_SUITE_P(Formats, OtherReadersTest, testing::Values(Format::kJet3, Format::kJet4),
                         [](const auto& test) { return test.param == Format::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(OtherReadersTest, SeeReceiptsOfEveryLength)
{
    const std::size_t mark = FileLayout().IsJet4() ? 2 : 0;  // FF FE in front of compressed text
    const std::size_t row = FileLayout().longValueRow;
    std::vector<Receipt> receipts;
    for (const std::size_t edge : {std::size_t{64}, row, 2 * (row - 4), 3 * (row - 4), std::size_t{60'000}}) {
        for (std::size_t size = edge - mark - 1; size <= edge - mark + 1; ++size)
            receipts.push_back(
                {static_cast<std::int32_t>(receipts.size()), TextOf(size), 38000.5, std::nullopt});
    }
    for (const bool compress : {true, false}) {
        options_.compress = compress;
        const auto rows = MdbExport(DatabaseBytes(receipts, options_));
        ASSERT_EQ(rows.size(), receipts.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            EXPECT_EQ(rows[i],
                      (Texts{std::to_string(i), *receipts[i].rawtransaction, "2004-01-14 12:00:00", "NULL"}));
    }
}

TEST_P(OtherReadersTest, FindEveryRowAsItCameWithBothKindsOfUsageMap)
{
    // Four rows fill a page. The last page, of one row, makes the difference.
    const std::string text = TextOf(FileLayout().pageSize / 4 - 70);
    const std::int32_t pages = FileLayout().IsJet4() ? 512 : 1024;
    options_.inlineLimit = DatabaseOptions::kMostInline;
    for (const std::int32_t count : {4 * pages, 4 * pages + 1}) {
        std::vector<Receipt> receipts;
        for (std::int32_t i = 0; i < count; ++i)
            receipts.push_back({i * 7 % count - count / 2, text, {}, {}});
        const auto rows = MdbExport(DatabaseBytes(receipts, options_));
        ASSERT_EQ(rows.size(), receipts.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            ASSERT_EQ(rows[i][0], std::to_string(*receipts[i].ref));
    }
}

TEST_P(OtherReadersTest, SeeNullsAndCharactersOfTheCodePage)
{
    options_.index = false;
    const std::string text = "Café €5 – ½ “Œuf” \x1B!\x20 \t end";
    const std::vector<Receipt> receipts = {{7, text, 38000.75, 0.25}, {}, {7, text, {}, {}}};
    const std::vector<Texts> rows = {{"7", text, "2004-01-14 18:00:00", "1899-12-30 06:00:00"},
                                     {"NULL", "NULL", "NULL", "NULL"},
                                     {"7", text, "NULL", "NULL"}};
    EXPECT_EQ(MdbExport(DatabaseBytes(receipts, options_)), rows);
    EXPECT_TRUE(MdbExport(DatabaseBytes({}, options_)).empty());
}

TEST(PageOutput, EndsAtTheLargestFileThatTheFormatsAllow)
{
    MemoryPages store;
    PageOutput output(store, kJet4Layout);
    for (std::uint32_t page = 0; page < 0x80000; ++page)
        ASSERT_EQ(output.Allocate(), page);
    EXPECT_EQ(FailureOf([&] { output.Allocate(); }), platform::failure::kOverflow);
}

TEST(DataPage, HoldsNoMoreRowsThanAPointerCanName)
{
    MemoryPages store;
    PageOutput output(store, kJet4Layout);
    RowPages rows(output, 1);
    std::map<std::uint32_t, int> rowsOnPage;
    for (int i = 0; i < 600; ++i)
        ++rowsOnPage[rows.Add("x").page];
    EXPECT_EQ(rowsOnPage, (std::map<std::uint32_t, int>{{0, 255}, {1, 255}, {2, 90}}));
}

TEST(FilePages, TakesTheFilesPlaceOnlyWhenItIsComplete)
{
    const TemporaryFolder folder;
    const std::string path = folder.Path("shop.mdb");
    WriteFile(path, "earlier");
    const std::vector<Receipt> receipts = {{1, TextOf(10'000), 38000.0, 38000.0}, {2, TextOf(9), {}, {}}};
    const auto write = [&](bool commit) {
        FilePages pages(path);
        DatabaseWriter writer(pages, {});
        for (const Receipt& receipt : receipts)
            writer.Add(receipt);
        writer.Finish();
        if (commit)
            pages.Commit();
    };
    write(false);
    EXPECT_EQ(ReadFile(path), "earlier");
    EXPECT_EQ(folder.NamesBut("shop.mdb"), Texts{});
    write(true);
    EXPECT_EQ(ReadFile(path), DatabaseBytes(receipts));
    EXPECT_EQ(FailureOf([&] { FilePages(folder.Path("none/shop.mdb")); }),
              platform::failure::kPathFileAccess);
}

}  // namespace
