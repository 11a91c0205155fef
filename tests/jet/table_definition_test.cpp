#include "platform/jet/table_definition.h"

#include <gtest/gtest.h>

#include <string>

#include "jet/memory_source.h"
#include "make_database/database_writer.h"

namespace platform::jet {
namespace {

constexpr std::size_t kContinuationHead = 8;
constexpr std::uint64_t kMostReads = 1'000;

std::string LittleEndian(std::size_t number, std::size_t size)
{
    std::string bytes;
    for (; size > 0; --size, number >>= 8)
        bytes.push_back(static_cast<char>(number));
    return bytes;
}

/// A Jet 4 definition of so many columns, c0, c1 and so on, of which every other one is fixed.
std::string WideDefinition(std::size_t columnCount)
{
    const auto& place = kJet4Layout.definition;
    std::string definition(place.end, '\0');
    definition.replace(place.rowCount, 4, LittleEndian(7, 4));
    definition.replace(place.columnCount, 2, LittleEndian(columnCount, 2));
    for (std::size_t i = 0; i < columnCount; ++i) {
        std::string record(kJet4Layout.column.size, '\0');
        record[0] = static_cast<char>(ColumnType::kLong);
        record.replace(kJet4Layout.column.number, 2, LittleEndian(i, 2));
        record.replace(kJet4Layout.column.flags, 1, LittleEndian(i % 2, 1));
        definition += record;
    }
    for (std::size_t i = 0; i < columnCount; ++i) {
        const std::string name = "c" + std::to_string(i);
        definition += LittleEndian(2 * name.size(), 2);
        for (const char c : name)
            definition += {c, '\0'};
    }
    return definition;
}

/// A file whose definition begins on page 1 and goes on over as many pages as it takes; the last one's
/// successor is `afterLast`.
std::string FileOf(std::string definition, std::size_t afterLast)
{
    const std::size_t pageSize = kJet4Layout.pageSize;
    std::string file = tools::DatabaseBytes({}).substr(0, pageSize);
    definition.erase(0, kContinuationHead);
    for (std::size_t number = 1; !definition.empty(); ++number) {
        const std::string part = definition.substr(0, pageSize - kContinuationHead);
        definition.erase(0, part.size());
        const std::size_t next = definition.empty() ? afterLast : number + 1;
        file += LittleEndian(2, 4) + LittleEndian(next, 4) + part;
        file.resize((number + 1) * pageSize);
    }
    return file;
}

TEST(TableDefinition, GoesOnOverSeveralPages)
{
    const PageFile file(std::make_unique<MemorySource>(FileOf(WideDefinition(255), 0), kMostReads), "memory");
    const TableDefinition table = ReadTableDefinition(file, 1);
    EXPECT_EQ(table.rowCount, 7U);
    ASSERT_EQ(table.columns.size(), 255U);
    for (const int number : {0, 100, 159, 160, 254}) {
        const Column* const column = table.Find("C" + std::to_string(number));
        ASSERT_NE(column, nullptr) << number;
        EXPECT_EQ(column->number, number);
        EXPECT_EQ(column->fixed, number % 2 == 1);
    }
}

TEST(TableDefinition, ThatGoesInACircleIsDamage)
{
    const PageFile file(std::make_unique<MemorySource>(FileOf(WideDefinition(200), 1), kMostReads), "memory");
    EXPECT_THROW((void)ReadTableDefinition(file, 1), Damage);
}

}  // namespace
}  // namespace platform::jet
