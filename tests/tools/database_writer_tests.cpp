#include "make_database/database_writer.h"

#include <gtest/gtest.h>

#include <map>

#include "make_database/usage_map.h"
#include "platform/failure_numbers.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"
#include "tools/mdb_export.h"

namespace {

using namespace tools;
using namespace std::string_literals;

/// A text of so many characters of which no two parts look alike.
std::string TextOf(std::size_t length)
{
    std::string text;
    while (text.size() < length)
        text += std::to_string(text.size()) + (text.size() % 3 == 0 ? "\r\n" : " ");
    text.resize(length);
    return text;
}

class DatabaseWriterTest : public testing::TestWithParam<Format> {
protected:
    [[nodiscard]] DatabaseOptions Options() const
    {
        DatabaseOptions options;
        options.format = GetParam();
        return options;
    }

    [[nodiscard]] const Layout& GetLayout() const { return LayoutOf(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(Formats, DatabaseWriterTest, testing::Values(Format::kJet3, Format::kJet4),
                         [](const auto& test) { return test.param == Format::kJet3 ? "Jet3" : "Jet4"; });

TEST_P(DatabaseWriterTest, OtherReadersSeeReceiptsOfEveryLength)
{
    if (!HasMdbExport())
        GTEST_SKIP() << "mdb-export is not installed";
    const std::size_t mark = GetLayout().IsJet4() ? 2 : 0;  // FF FE in front of compressed text
    const std::size_t row = GetLayout().longValueRow;
    std::vector<Receipt> receipts;
    for (const std::size_t edge : {std::size_t{64}, row, 2 * (row - 4), 3 * (row - 4), std::size_t{60'000}}) {
        for (std::size_t size = edge - mark - 1; size <= edge - mark + 1; ++size)
            receipts.push_back(
                {static_cast<std::int32_t>(receipts.size()), TextOf(size), 38000.5, std::nullopt});
    }
    for (const bool compress : {true, false}) {
        DatabaseOptions options = Options();
        options.compress = compress;
        const auto rows = MdbExport(DatabaseBytes(receipts, options));
        ASSERT_EQ(rows.size(), receipts.size());
        for (std::size_t i = 0; i < rows.size(); ++i) {
            EXPECT_EQ(rows[i][0], std::to_string(i));
            EXPECT_EQ(rows[i][1], receipts[i].rawtransaction) << receipts[i].rawtransaction->size();
            EXPECT_EQ(rows[i][2], "2004-01-14 12:00:00");
            EXPECT_EQ(rows[i][3], "NULL");
        }
    }
}

TEST_P(DatabaseWriterTest, KeepsRowsInTheOrderInWhichTheyCame)
{
    if (!HasMdbExport())
        GTEST_SKIP() << "mdb-export is not installed";
    constexpr std::int32_t kRows = 1500;
    constexpr std::int32_t kStep = 7;  // shares no factor with the number of rows
    std::vector<Receipt> receipts;
    receipts.reserve(kRows);
    for (std::int32_t i = 0; i < kRows; ++i)
        receipts.push_back({i * kStep % kRows - kRows / 2, TextOf(static_cast<std::size_t>(i % 90)), {}, {}});
    const auto rows = MdbExport(DatabaseBytes(receipts, Options()));
    ASSERT_EQ(rows.size(), receipts.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
        ASSERT_EQ(rows[i][0], std::to_string(*receipts[i].ref));
}

TEST_P(DatabaseWriterTest, WritesNullsAndCharactersOfTheCodePage)
{
    if (!HasMdbExport())
        GTEST_SKIP() << "mdb-export is not installed";
    DatabaseOptions options = Options();
    options.index = false;
    const std::string text = "Café €5 – ½ “Œuf” \x1B!\x20 \t end";
    const std::vector<Receipt> receipts = {{7, text, 38000.75, 0.25}, {}, {7, text, {}, {}}};
    const std::vector<std::vector<std::string>> rows = {
        {"7", text, "2004-01-14 18:00:00", "1899-12-30 06:00:00"},
        {"NULL", "NULL", "NULL", "NULL"},
        {"7", text, "NULL", "NULL"}};
    EXPECT_EQ(MdbExport(DatabaseBytes(receipts, options)), rows);
    EXPECT_TRUE(MdbExport(DatabaseBytes({}, options)).empty());
}

std::uint32_t NumberAt(const Bytes& bytes, std::size_t offset)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < sizeof number; ++i)
        number |= std::uint32_t{static_cast<std::uint8_t>(bytes[offset + i])} << 8 * i;
    return number;
}

TEST_P(DatabaseWriterTest, TheDefinitionCountsTheRowsAndNamesTheRootOfTheIndex)
{
    const std::size_t pageSize = GetLayout().pageSize;
    for (const std::int32_t rows : {3, 2000}) {
        std::vector<Receipt> receipts(static_cast<std::size_t>(rows));
        for (std::int32_t i = 0; i < rows; ++i)
            receipts[static_cast<std::size_t>(i)].ref = i;
        const Bytes database = DatabaseBytes(receipts, Options());
        const Bytes definition = database.substr(3 * pageSize, pageSize);
        EXPECT_EQ(NumberAt(definition, GetLayout().IsJet4() ? 16 : 12), static_cast<std::uint32_t>(rows));

        // Behind the key's one column and nine times "no column" stand its usage map and its root page.
        const Bytes noColumns = "\xFF\xFF\0\xFF\xFF\0\xFF\xFF\0\xFF\xFF\0\xFF\xFF\0"s;
        const std::size_t columns = definition.find("\0\0\1"s + noColumns);
        ASSERT_NE(columns, Bytes::npos);
        const std::uint32_t root = NumberAt(definition, columns + 34);
        const auto rootType = rows == 3 ? PageType::kIndexLeaf : PageType::kIndexNode;
        EXPECT_EQ(database[root * pageSize], static_cast<char>(rootType));
    }
}

/// Number of rows that a chain of long values has, each beginning with the pointer to the next.
std::uint32_t ChainLength(const Layout& layout, const Bytes& database, std::uint32_t pointer)
{
    std::uint32_t length = 0;
    for (; pointer != 0 && length < 99; ++length) {
        const std::size_t page = (pointer >> 8) * layout.pageSize;
        const std::size_t place = page + layout.rowCountOffset + 2 * (std::size_t{1} + (pointer & 0xFF));
        pointer = NumberAt(database, page + (NumberAt(database, place) & 0x1FFF));
    }
    return length;
}

TEST_P(DatabaseWriterTest, LongValuesStayInTheirRowOrTakeOneRowOrAChain)
{
    const std::size_t longest = GetLayout().longValueRow;
    const struct {
        std::size_t size;
        std::uint32_t kind;
        std::uint32_t rows;  // of a chain
    } cases[] = {{0, 0x80000000, 0},           {64, 0x80000000, 0}, {65, 0x40000000, 0},
                 {longest, 0x40000000, 0},     {longest + 1, 0, 2}, {2 * (longest - 4), 0, 2},
                 {2 * (longest - 4) + 1, 0, 3}};
    for (const auto& [size, kind, rows] : cases) {
        MemoryPages store;
        PageOutput output(store, GetLayout());
        output.Allocate();  // a pointer to page 0 would end a chain
        LongValues values(output, 64);
        const Bytes field = values.Store(TextOf(size));
        values.Flush();
        EXPECT_EQ(NumberAt(field, 0), size | kind);
        EXPECT_EQ(field.substr(12), size <= 64 ? TextOf(size) : "");
        EXPECT_EQ(kind == 0 ? ChainLength(GetLayout(), store.Content(), NumberAt(field, 4)) : rows, rows);
    }
}

/// Rows that fill pages by fours and need no page of their own for the text.
std::vector<Receipt> QuarterPages(const Layout& layout, std::size_t count)
{
    std::vector<Receipt> receipts;
    const std::size_t size = layout.pageSize / 4 - 70;
    for (std::size_t i = 0; i < count; ++i)
        receipts.push_back({static_cast<std::int32_t>(i), TextOf(size), {}, {}});
    return receipts;
}

TEST_P(DatabaseWriterTest, OtherReadersFindAllPagesWithBothKindsOfUsageMap)
{
    if (!HasMdbExport())
        GTEST_SKIP() << "mdb-export is not installed";
    const std::size_t inlinePages = GetLayout().IsJet4() ? 512 : 1024;
    DatabaseOptions options = Options();
    options.inlineLimit = DatabaseOptions::kMostInline;
    for (const std::size_t rows : {4 * inlinePages, 4 * inlinePages + 1}) {
        const auto exported = MdbExport(DatabaseBytes(QuarterPages(GetLayout(), rows), options));
        ASSERT_EQ(exported.size(), rows);
        EXPECT_EQ(exported.back()[0], std::to_string(rows - 1));
    }
}

TEST_P(DatabaseWriterTest, UsageMapsLieInTheRowWhileTheyReach)
{
    const std::uint32_t reach = GetLayout().IsJet4() ? 512 : 1024;
    const std::uint32_t perBitmap = static_cast<std::uint32_t>(GetLayout().pageSize - 4) * 8;
    const struct {
        std::vector<std::uint32_t> pages;
        char kind;
        std::uint32_t bitmaps;
    } cases[] = {
        {{}, 0, 0},
        {{100'000, 100'000 + reach - 1}, 0, 0},
        {{100'000, 100'000 + reach}, 1, 1},
        {{0, perBitmap - 1}, 1, 1},
        {{0, perBitmap}, 1, 2},
        {{0, 0x7FFFF}, 1, 2},
    };
    for (const auto& [pages, kind, bitmaps] : cases) {
        MemoryPages store;
        PageOutput output(store, GetLayout());
        const Bytes map = BuildUsageMap(output, pages);
        EXPECT_EQ(map[0], kind);
        EXPECT_EQ(store.Content().size(), bitmaps * GetLayout().pageSize);
    }
}

TEST_P(DatabaseWriterTest, KeepsThePrimaryKeyUniqueAndFilled)
{
    MemoryPages store;
    DatabaseWriter writer(store, Options());
    writer.Add({5, "a", {}, {}});
    EXPECT_EQ(FailureOf([&] { writer.Add({{}, "b", {}, {}}); }), platform::failure::kTypeMismatch);
    writer.Add({-5, "c", {}, {}});
    writer.Add({5, "d", {}, {}});
    try {
        writer.Finish();
        ADD_FAILURE();
    } catch (const DuplicateRef& failure) {
        EXPECT_EQ(failure.Ref(), 5);
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
    EXPECT_EQ(ReadFile(path + ".part"), "");
    write(true);
    EXPECT_EQ(ReadFile(path), DatabaseBytes(receipts));
    EXPECT_EQ(FailureOf([&] { FilePages(folder.Path("none/shop.mdb")); }),
              platform::failure::kPathFileAccess);
}

}  // namespace
