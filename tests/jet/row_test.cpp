#include "platform/jet/row.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "jet/made_database.h"
#include "make_database/row_encoder.h"
#include "platform/jet/data_page.h"

namespace platform::jet {
namespace {

using Bytes = std::vector<std::uint8_t>;

Column Fixed(std::uint16_t number, std::uint16_t length)
{
    return {"fixed", ColumnType::kLong, number, 0, true, 0, length, 0};
}

Column Variable(std::uint16_t number, std::uint16_t index)
{
    return {"variable", ColumnType::kText, number, index, false, 0, 255, 0};
}

Row MakeRow(const Bytes& bytes, Format format = Format::kJet4, std::uint16_t variableColumnCount = 1)
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

/// Expects a row of a number and texts of these lengths to be read as it was written, in both formats.
void ExpectRowIsRead(const std::vector<std::size_t>& lengths)
{
    SCOPED_TRACE(testing::PrintToString(lengths));
    std::vector<tools::Column> columns = {{"number", tools::ColumnType::kInteger}};
    tools::Cells cells = {"FF"};
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        columns.push_back({"text", tools::ColumnType::kMemo});
        cells.emplace_back(std::string(lengths[i], static_cast<char>('a' + i)));
    }
    for (const Format format : {Format::kJet3, Format::kJet4}) {
        const auto& layout = format == Format::kJet3 ? tools::kJet3Layout : tools::kJet4Layout;
        const std::string bytes = tools::EncodeRow(layout, columns, cells);
        const Row row =
            MakeRow({bytes.begin(), bytes.end()}, format, static_cast<std::uint16_t>(lengths.size()));
        ASSERT_EQ(TextOf(row, Fixed(0, 2)), "FF");
        for (std::uint16_t i = 0; i < lengths.size(); ++i)
            ASSERT_EQ(TextOf(row, Variable(static_cast<std::uint16_t>(i + 1), i)), cells[i + 1]);
    }
}

TEST(Row, IsReadWhereverItsTextsBegin)
{
    // Jet 3 counts in bytes: every further 256 is a jump, and the offsets alone may reach past one.
    for (std::size_t length = 0; length < 1100; ++length)
        ExpectRowIsRead({length});
    for (const std::vector<std::size_t>& lengths :
         {std::vector<std::size_t>{10, 0, 20}, {255, 10, 10}, {100, 200, 10}, {10, 600, 10}, {300, 250, 10}})
        ExpectRowIsRead(lengths);
}

TEST(Row, OfJet3HasNoUseForAJumpThatOnlyItsOffsetsReach)
{
    Bytes bytes = {2, 'F'};
    bytes.insert(bytes.end(), 251, 'a');
    bytes.insert(bytes.end(), {253, 2, 0, 1, 0x03});  // offsets, jump, number of texts, mask
    EXPECT_EQ(TextOf(MakeRow(bytes, Format::kJet3), Variable(1, 0)), std::string(251, 'a'));
}

TEST(Row, Jet4ColumnsAreNullByMaskByAgeAndByCount)
{
    // Two columns, the first fixed; one text "xy"; the mask has bits 0 and 1.
    Bytes bytes = {2, 0, 7, 0, 'x', 'y', 6, 0, 4, 0, 1, 0, 0x03};
    const Row row = MakeRow(bytes);
    EXPECT_EQ(row.BytesOf(Fixed(0, 2))->U16(0), 7);
    EXPECT_EQ(TextOf(row, Variable(1, 0)), "xy");
    EXPECT_EQ(TextOf(row, Variable(1, 1)), "null") << "a column that the row has no place for";
    EXPECT_EQ(TextOf(row, Variable(2, 0)), "null") << "a column added after the row was written";
    bytes.back() = 0x01;
    EXPECT_EQ(TextOf(MakeRow(bytes), Variable(1, 0)), "null");

    const Row withoutOffsets = MakeRow({1, 0, 0x2A, 0, 0, 0, 0x01}, Format::kJet4, 0);
    EXPECT_EQ(withoutOffsets.BytesOf(Fixed(0, 4))->U32(0), 42U);
}

TEST(Row, IsFoundThatMovedMoreThanOnceButNotInACircle)
{
    constexpr std::uint32_t kOwner = 9;
    const std::size_t pageSize = kJet4Layout.pageSize;
    for (const bool circle : {false, true}) {
        tools::DataPage page(tools::kJet4Layout, kOwner);
        page.Add(tools::NumberBytes(PositionOf(1, 1).packed));
        page.Add(tools::NumberBytes(PositionOf(1, circle ? 0 : 2).packed));
        page.Add("the row");
        std::string bytes = tools::DatabaseBytes({}).substr(0, pageSize) + page.Content();
        for (std::size_t row = 0; const int flag : {0x40, 0x40, 0x80})
            bytes[pageSize + kJet4Layout.data.rowOffsets + 2 * row++ + 1] |= static_cast<char>(flag);
        const PageFile file(Memory(bytes, 100), "memory");
        if (circle)
            EXPECT_THROW((void)FetchRow(file, PositionOf(1, 0), kOwner), Damage);
        else
            EXPECT_EQ(FetchRow(file, PositionOf(1, 0), kOwner).bytes.AsText(), "the row");
    }
}

}  // namespace
}  // namespace platform::jet
