#include "platform/jet/table_definition.h"

#include <algorithm>

#include "platform/ansi_code_page.h"
#include "platform/conversions.h"
#include "platform/jet/damage_report.h"
#include "platform/jet/text.h"

/// Definition of a table
///
/// It begins on a page of kind 2 and goes on over others, each continued from its byte 8.
///
///   OFFSET 3|4   SIZE      DESCRIPTION
///   4|4          4         next page of the definition; 0: none
///   12|16        4         number of rows: a hint, see AreAllRows in sorted_order.cpp
///   23|43        2         columns of variable length, deleted ones included
///   25|45        2         columns
///   31|51        4         indexes with pages of their own
///   35|55        4         usage map: row (1 byte) and page (3 bytes) where it stands
///   43|63        8|12      one for each index; not read
///   then         18|25     one for each column, the table below
///   then         1|2 + n   one for each column: length of its name in bytes, name (code page | UTF-16)
///   then         39|52     one for each index, the table below
///
///   Column: OFFSET 3|4     SIZE    DESCRIPTION
///   0|0                    1       type, see ColumnType
///   1|5                    2       number: its bit in a row's null mask; need not be its place in this list
///   3|7                    2       place among the columns of variable length
///   12|12                  1       Jet 4: decimal places
///   13|15                  1       flags; 1: of fixed length
///   14|21                  2       of fixed length: offset behind the row's first field
///   16|23                  2       length in bytes
///
///   Index: OFFSET 3|4      SIZE    DESCRIPTION
///   0|4                    10 x 3  columns: number (FFFF: none), 1 for ascending
///   34|38                  4       root page
///   38|46                  1       flags; 2: leaves out rows whose columns are null
namespace platform::jet {
namespace {

constexpr std::size_t kNextPage = 4;
constexpr std::size_t kContinuationStart = 8;
constexpr std::size_t kMostPages = 64;  // four times what 255 columns with the longest names need
constexpr std::uint8_t kFixedFlag = 0x01;
constexpr std::uint8_t kLeavesOutNullsFlag = 0x02;
constexpr std::size_t kIndexPartCount = 10;
constexpr std::size_t kIndexPartSize = 3;
constexpr std::uint16_t kNoColumn = 0xFFFF;
constexpr std::uint8_t kAscending = 1;

/// The definition's pages joined into one run of bytes.
std::vector<std::uint8_t> JoinPages(const PageFile& file, std::uint32_t number)
{
    std::vector<std::uint8_t> joined;
    for (std::size_t count = 0; number != 0; ++count) {
        if (count == kMostPages)
            throw Damage("a table definition has no end");
        const Page page = file.ReadPage(number, PageType::kDefinition);
        const auto bytes = page.View().From(count == 0 ? 0 : kContinuationStart).Bytes();
        joined.insert(joined.end(), bytes.begin(), bytes.end());
        number = page.View().U32(kNextPage);
    }
    return joined;
}

/// Reads the parts of a definition that follow one another.
class DefinitionReader {
public:
    DefinitionReader(ByteView bytes, Format format)
        : bytes_(bytes), format_(format), layout_(LayoutOf(format)), at_(layout_.definition.end)
    {}

    [[nodiscard]] TableDefinition Read()
    {
        TableDefinition table;
        const auto& place = layout_.definition;
        table.rowCount = bytes_.U32(place.rowCount);
        table.variableColumnCount = bytes_.U16(place.variableColumnCount);
        table.usageMap = {bytes_.U32(place.usageMap)};
        const std::size_t indexCount = bytes_.U32(place.indexCount);
        const std::size_t columnCount = bytes_.U16(place.columnCount);
        NextRecord(indexCount * place.indexPlaceSize);
        for (std::size_t i = 0; i < columnCount; ++i)
            table.columns.push_back(NextColumn());
        for (Column& column : table.columns)
            column.name = NextName();
        for (std::size_t i = 0; i < indexCount; ++i)
            table.indexes.push_back(NextIndex());
        return table;
    }

private:
    ByteView NextRecord(std::size_t size)
    {
        const ByteView record = bytes_.Slice(at_, size);
        at_ += size;
        return record;
    }

    Column NextColumn()
    {
        const auto& place = layout_.column;
        const ByteView record = NextRecord(place.size);
        return {.name = {},
                .type = static_cast<ColumnType>(record.U8(0)),
                .number = record.U16(place.number),
                .variableIndex = record.U16(place.variableIndex),
                .fixed = (record.U8(place.flags) & kFixedFlag) != 0,
                .fixedOffset = record.U16(place.fixedOffset),
                .length = record.U16(place.length),
                .scale = record.U8(place.scale)};
    }

    std::string NextName()
    {
        if (format_ == Format::kJet3)
            return FromAnsi(NextRecord(NextRecord(1).U8(0)).AsText());
        return FromUtf16(NextRecord(NextRecord(2).U16(0)));
    }

    Index NextIndex()
    {
        const auto& place = layout_.indexRecord;
        const ByteView record = NextRecord(place.size);
        Index index{.parts = {},
                    .rootPage = record.U32(place.rootPage),
                    .leavesOutNulls = (record.U8(place.flags) & kLeavesOutNullsFlag) != 0};
        for (std::size_t i = 0; i < kIndexPartCount; ++i) {
            const ByteView part = record.Slice(place.columns + i * kIndexPartSize, kIndexPartSize);
            if (part.U16(0) != kNoColumn)
                index.parts.push_back({part.U16(0), part.U8(2) == kAscending});
        }
        return index;
    }

    ByteView bytes_;
    Format format_;
    const Layout& layout_;
    std::size_t at_;
};

}  // namespace

const Column* TableDefinition::Find(const std::string& columnName) const
{
    const auto found = std::ranges::find_if(
        columns, [&](const Column& column) { return SameName(column.name, columnName); });
    return found == columns.end() ? nullptr : &*found;
}

TableDefinition ReadTableDefinition(const PageFile& file, std::uint32_t page)
{
    return OnPage(page, [&] {
        const std::vector<std::uint8_t> bytes = JoinPages(file, page);
        TableDefinition table = DefinitionReader(ByteView(bytes), file.FileFormat()).Read();
        table.page = page;
        return table;
    });
}

}  // namespace platform::jet
