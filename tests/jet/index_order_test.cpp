#include "platform/jet/row_order.h"

#include <gtest/gtest.h>

#include "jet/made_database.h"
#include "platform/jet/index_page.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {
namespace {

int LevelOf(const PageFile& file, std::uint32_t number)
{
    return file.ReadPage(number).View().U8(file.FileFormat() == Format::kJet3 ? 21 : 26);
}

/// The last entry of a page of an index. Every entry of a node must end the page that it names, and that page
/// stand one level lower; of all readers only those rely on it that look for a single row.
std::string LastEntry(const PageFile& file, std::uint32_t number)
{
    const Page page = file.ReadPage(number);
    const IndexPage index(page.View(), file.PageLayout());
    const bool isNode = page.Is(PageType::kIndexNode);
    EXPECT_EQ(isNode, LevelOf(file, number) > 0);
    std::string entry;
    for (std::size_t i = 0; i < index.EntryCount(); ++i) {
        index.GetEntry(i, entry);
        if (!isNode)
            continue;
        EXPECT_TRUE(entry.starts_with(LastEntry(file, PageBelow(entry)).substr(0, 9))) << number;
        EXPECT_EQ(LevelOf(file, PageBelow(entry)), LevelOf(file, number) - 1) << number;
    }
    return entry;
}

TEST(IndexOrder, IsTheOneThatASortComesTo)
{
    const std::tuple<std::int32_t, std::int32_t, std::int32_t> cases[] = {
        {1, -5, 1},           {299, 1, 1}, {300, 1, 1},  // no longer one page of Jet 3
        {602, 1, 1},          {603, 1, 1},               // nor one of Jet 4
        {2'000, 1, 400'000},                             // keys that share little
        {60'000, -30'000, 1},
    };
    for (const auto format : {tools::Format::kJet3, tools::Format::kJet4})
        for (const auto& [count, first, step] : cases) {
            SCOPED_TRACE(count);
            std::vector<tools::Receipt> receipts;
            for (std::int32_t i = 0; i < count; ++i)
                receipts.push_back({first + i * 11 % count * step, std::nullopt, 0.5, std::nullopt});
            const std::string bytes = DatabaseBytes(receipts, {.format = format, .password = ""});
            const PageFile file(Memory(bytes), "memory");
            const TableDefinition table = FindTable(file, "trans");
            const Column& ref = *table.Find("ref");
            EXPECT_TRUE(PositionsByIndex(file, table, ref) == PositionsBySorting(file, table, ref));
            (void)LastEntry(file, table.indexes.at(0).rootPage);
        }
}

TEST(IndexPage, ThatMakesNoSenseIsDamage)
{
    const auto& place = kJet4Layout.indexPage;
    std::vector<std::uint8_t> page(kJet4Layout.pageSize);
    page[place.entryMask] = 1 << 3;  // one entry, of three bytes
    std::string entry;
    IndexPage(ByteView(page), kJet4Layout).GetEntry(0, entry);
    EXPECT_THROW((void)PositionIn(entry), Damage) << "too short for a position";
    page[place.prefixLength] = 4;
    EXPECT_THROW(IndexPage(ByteView(page), kJet4Layout), Damage) << "shares more than the first entry has";
    page[place.prefixLength] = 0;
    page[place.entries - 1] = 0x80;
    EXPECT_THROW(IndexPage(ByteView(page), kJet4Layout), Damage) << "reaches past the page";
}

}  // namespace
}  // namespace platform::jet
