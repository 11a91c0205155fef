#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "jet/made_database.h"
#include "make_database/bytes.h"
#include "platform/failure.h"
#include "platform/jet/table_definition.h"
#include "support/failure_of.h"

namespace platform::jet {
namespace {

constexpr std::uint32_t kRows = 90;  // on three pages in Jet 4, on six in Jet 3

/// A database of kRows rows, and where it holds what the tests change.
struct CountedDatabase {
    CountedDatabase(const Layout& itsLayout, const tools::DatabaseOptions& options)
        : layout(itsLayout), bytes(DatabaseBytes(Receipts(kRows, std::string(50, 'r')), options))
    {
        const PageFile file(Memory(bytes), "memory");
        const TableDefinition table = FindTable(file, "trans");
        count = table.page * layout.pageSize + layout.definition.rowCount;
        const std::size_t map = table.usageMap.Page() * layout.pageSize;
        const ByteView view({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        usageMap = map + view.U16(map + layout.data.rowOffsets + 2 * table.usageMap.Row());
        freePages = layout.pageSize + view.U16(layout.pageSize + layout.data.rowOffsets);
        if (options.index)
            indexRoot = table.indexes[0].rootPage;
        std::uint32_t page = 1;
        while (!file.ReadPage(page).Is(PageType::kData) || file.ReadPage(page).Owner() != table.page)
            ++page;
        firstPage = page * layout.pageSize;
    }

    /// How many rows the database opens with; less than 0, the number of the failure.
    [[nodiscard]] std::int64_t Open() const
    {
        std::int64_t rows = 0;
        const int number = FailureOf([&] { return rows = OpenInMemory(bytes)->RecordCount(); });
        return number == 0 ? rows : -number;
    }

    /// A byte of the first page of rows.
    char& First(std::size_t at) { return bytes[firstPage + at]; }

    const Layout& layout;
    std::string bytes;
    std::size_t count = 0;
    std::size_t usageMap = 0;
    std::size_t freePages = 0;  // the file's own usage map
    std::size_t firstPage = 0;
    std::uint32_t indexRoot = 0;
};

using StaleCountTest = FormatTest;

INSTANTIATE_TEST_SUITE_P(Formats, StaleCountTest, kBothFormats, FormatName);

TEST_P(StaleCountTest, HidesNoRow)
{
    for (const bool index : {true, false}) {
        options_.index = index;
        CountedDatabase database(FileLayout(), options_);
        for (const std::uint32_t count : {0U, 1U, kRows - 1, kRows, kRows + 1, 1'000U}) {
            tools::Store(database.bytes, database.count, count);
            EXPECT_EQ(database.Open(), kRows) << count;
        }
    }
}

void Unmark(CountedDatabase& database)
{
    char& marks = database.bytes[database.usageMap + 5];
    marks = static_cast<char>(marks & (marks - 1));
}

TEST_P(StaleCountTest, LetsGoOfAPageThatTheFileHasForFree)
{
    options_.index = false;
    CountedDatabase database(FileLayout(), options_);
    Unmark(database);
    tools::SetBit(database.bytes, database.freePages + 5, database.firstPage / database.layout.pageSize);
    EXPECT_GT(database.Open(), 0);
    EXPECT_LT(database.Open(), kRows);
}

TEST_P(StaleCountTest, IsRefusedWithAnIndexOfOtherRowsUnlessThatLeavesOutNulls)
{
    CountedDatabase database(FileLayout(), options_);
    const auto& place = database.layout.indexPage;
    const std::size_t mask = database.indexRoot * database.layout.pageSize + place.entryMask;
    database.bytes.replace(mask, place.entries - place.entryMask, place.entries - place.entryMask, '\0');
    const auto& record = database.layout.indexRecord;
    const std::size_t root = database.bytes.find(tools::NumberBytes(database.indexRoot),
                                                 database.count + database.layout.definition.end);
    for (const bool leavesOutNulls : {false, true}) {
        const std::int64_t expected = leavesOutNulls ? std::int64_t{kRows} : -failure::kDatabaseDamaged;
        for (const std::uint32_t count : {0U, kRows + 1}) {
            tools::Store(database.bytes, database.count, count);
            database.bytes[root + record.flags - record.rootPage] = leavesOutNulls ? '\2' : '\0';
            EXPECT_EQ(database.Open(), expected) << count;
        }
    }
}

/// What loses a row that the count has.
using Loss = std::pair<const char*, std::function<void(CountedDatabase&)>>;

const Loss kLosses[] = {
    {"from the end of a page's list", [](CountedDatabase& its) { --its.First(its.layout.data.rowCount); }},
    {"with its page, which is of another kind",
     [](CountedDatabase& its) { its.First(0) = static_cast<char>(PageType::kUsageMap); }},
    {"with its page, which is another table's", [](CountedDatabase& its) { its.First(4) = 2; }},
    {"with its page, which the usage map does not mark", Unmark},
    {"with all others, marked as deleted",
     [](CountedDatabase& database) {
         const auto& [count, list] = database.layout.data;
         const auto owner = static_cast<char>(database.count / database.layout.pageSize);
         for (std::size_t page = database.firstPage; database.bytes[page + 4] == owner;
              page += database.layout.pageSize)
             for (int row = 0; row < database.bytes[page + count]; ++row)
                 database.bytes[page + list + 2 * static_cast<std::size_t>(row) + 1] |= '\xC0';
     }},
    {"marked as deleted",  // without an index it cannot be told from a row that was
     [](CountedDatabase& its) { its.First(its.layout.data.rowOffsets + 1) |= '\xC0'; }},
};

TEST_P(StaleCountTest, IsNoExcuseForALostRow)
{
    for (const bool index : {true, false}) {
        options_.index = index;
        CountedDatabase sound(FileLayout(), options_);
        tools::Store(sound.bytes, sound.count, kRows + 1);
        for (const auto& [name, lose] : std::span(kLosses).first(index ? 6 : 5)) {
            CountedDatabase database = sound;
            lose(database);
            EXPECT_EQ(database.Open(), -failure::kDatabaseDamaged) << name;
        }
    }
}

}  // namespace
}  // namespace platform::jet
