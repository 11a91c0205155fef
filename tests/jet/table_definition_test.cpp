#include "platform/jet/table_definition.h"

#include <gtest/gtest.h>

#include <string>

#include "jet/made_database.h"
#include "make_database/table_definition.h"

namespace platform::jet {
namespace {

constexpr std::size_t kPageHead = 8;
constexpr std::size_t kPartSize = 4096 - kPageHead;
constexpr std::uint32_t kPages = 3;

/// A file whose definition of 255 columns, c0, c1 and so on, every other one a text, begins on page 1 and goes
/// on over three pages; `afterLast` follows the last of them.
PageFile WideTable(std::uint32_t afterLast)
{
    std::vector<std::string> names;
    for (int i = 0; i < 255; ++i)
        names.push_back("c" + std::to_string(i));
    std::vector<tools::Column> columns;
    for (const auto& name : names)
        columns.push_back(
            {name, columns.size() % 2 == 0 ? tools::ColumnType::kLong : tools::ColumnType::kText});
    tools::Layout onePage = tools::kJet4Layout;
    onePage.pageSize = kPageHead + kPages * kPartSize;
    const std::string definition =
        BuildTableDefinition(onePage, {tools::TableKind::kUser, columns, 7, {}, {}, std::nullopt});

    std::string file = tools::DatabaseBytes({}).substr(0, kJet4Layout.pageSize);
    for (std::uint32_t page = 1; page <= kPages; ++page) {
        std::string head = definition.substr(0, kPageHead);
        tools::Store(head, 4, page == kPages ? afterLast : page + 1);
        file += head + definition.substr(kPageHead + (page - 1) * kPartSize, kPartSize);
    }
    return {Memory(file, 1'000), "memory"};
}

TEST(TableDefinition, GoesOnOverSeveralPages)
{
    const TableDefinition table = ReadTableDefinition(WideTable(0), 1);
    EXPECT_EQ(table.rowCount, 7U);
    ASSERT_EQ(table.columns.size(), 255U);
    for (int number = 0; number < 255; ++number) {
        const Column* const column = table.Find("C" + std::to_string(number));
        ASSERT_NE(column, nullptr) << number;
        EXPECT_EQ(column->number, number);
        EXPECT_EQ(column->fixed, number % 2 == 0);
    }
}

TEST(TableDefinition, ThatGoesInACircleIsDamage)
{
    EXPECT_THROW((void)ReadTableDefinition(WideTable(1), 1), Damage);
}

}  // namespace
}  // namespace platform::jet
