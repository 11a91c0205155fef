#include "platform/jet/row.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace platform::jet {
namespace {

using Bytes = std::vector<std::uint8_t>;

Column Fixed(std::uint16_t number, std::uint16_t offset, std::uint16_t length)
{
    return {"fixed", ColumnType::kLong, number, 0, true, offset, length, 0};
}

Column Variable(std::uint16_t number, std::uint16_t index)
{
    return {"variable", ColumnType::kText, number, index, false, 0, 255, 0};
}

Row MakeRow(const Bytes& bytes, Format format, std::uint16_t variableColumnCount = 1)
{
    TableDefinition table;
    table.variableColumnCount = variableColumnCount;
    const Page page{bytes};
    return Row({page, page.View()}, table, format);
}

std::string TextOf(const Row& row, const Column& column)
{
    const auto bytes = row.BytesOf(column);
    return bytes ? std::string(bytes->AsText()) : "null";
}

/// A Jet 3 row of three texts after one fixed byte; `jumps` go before the count of columns, the last first.
Bytes Jet3Row(const std::vector<std::size_t>& lengths, const Bytes& jumps)
{
    Bytes row = {4, 'F'};
    Bytes offsets;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        offsets.push_back(static_cast<std::uint8_t>(row.size()));
        row.insert(row.end(), lengths[i], static_cast<std::uint8_t>('a' + i));
    }
    offsets.push_back(static_cast<std::uint8_t>(row.size()));
    row.insert(row.end(), offsets.rbegin(), offsets.rend());
    row.insert(row.end(), jumps.begin(), jumps.end());
    row.push_back(static_cast<std::uint8_t>(lengths.size()));
    row.push_back(0x0F);
    return row;
}

TEST(Row, Jet3OffsetsCountOnPastEachJump)
{
    struct Case {
        const char* name;
        std::vector<std::size_t> lengths;
        Bytes jumps;
    };
    const std::vector<Case> cases = {
        {"no jump", {10, 0, 20}, {}},
        {"the second text begins past 256 bytes", {255, 10, 10}, {1}},
        {"one text crosses 256", {100, 200, 10}, {2}},
        {"two jumps at once", {10, 600, 10}, {2, 2}},
        {"two jumps", {300, 250, 10}, {2, 1}},
        {"a dummy: the offsets alone reach past 256", {100, 100, 50}, {0xFF}},
    };
    for (const Case& c : cases) {
        const Row row = MakeRow(Jet3Row(c.lengths, c.jumps), Format::kJet3, 3);
        EXPECT_EQ(TextOf(row, Fixed(0, 0, 1)), "F") << c.name;
        for (std::uint16_t i = 0; i < 3; ++i)
            EXPECT_EQ(TextOf(row, Variable(static_cast<std::uint16_t>(i + 1), i)),
                      std::string(c.lengths[i], static_cast<char>('a' + i)))
                << c.name << ", text " << i;
    }
}

TEST(Row, Jet4ColumnsAreNullByMaskByAgeAndByCount)
{
    // Two columns, the first fixed; one text "xy"; the mask has bits 0 and 1.
    const Bytes bytes = {2, 0, 7, 0, 'x', 'y', 6, 0, 4, 0, 1, 0, 0x03};
    const Row row = MakeRow(bytes, Format::kJet4);
    EXPECT_EQ(row.BytesOf(Fixed(0, 0, 2))->U16(0), 7);
    EXPECT_EQ(TextOf(row, Variable(1, 0)), "xy");
    EXPECT_EQ(TextOf(row, Variable(1, 1)), "null") << "a column that the row has no place for";
    EXPECT_EQ(TextOf(row, Variable(2, 0)), "null") << "a column added after the row was written";

    Bytes masked = bytes;
    masked.back() = 0x01;
    EXPECT_EQ(TextOf(MakeRow(masked, Format::kJet4), Variable(1, 0)), "null");
}

TEST(Row, OfATableWithoutVariableColumnsHasNoOffsets)
{
    const Row row = MakeRow({1, 0, 0x2A, 0, 0, 0, 0x01}, Format::kJet4, 0);
    EXPECT_EQ(row.BytesOf(Fixed(0, 0, 4))->U32(0), 42U);
}

TEST(Row, ThatMakesNoSenseIsDamage)
{
    EXPECT_THROW(MakeRow({}, Format::kJet4), Damage) << "nothing";
    EXPECT_THROW(MakeRow({200, 0, 1}, Format::kJet4), Damage) << "a mask longer than the row";
    const Row backwards = MakeRow({1, 0, 'x', 'y', 2, 0, 4, 0, 1, 0, 0x01}, Format::kJet4);
    EXPECT_THROW((void)backwards.BytesOf(Variable(0, 0)), Damage) << "a text that ends before it begins";
    const Row overlapping = MakeRow({1, 0, 'x', 'y', 9, 0, 2, 0, 1, 0, 0x01}, Format::kJet4);
    EXPECT_THROW((void)overlapping.BytesOf(Variable(0, 0)), Damage) << "a text that reaches into the offsets";
}

}  // namespace
}  // namespace platform::jet
