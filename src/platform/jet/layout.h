#pragma once

#include <cstddef>
#include <cstdint>

/// The file format, told where it is read:
///
///   header.cpp            page 0: version, password, the key of encoded pages
///   page_file.cpp         pages, their kinds, encoded pages
///   table_definition.cpp  a table's columns and indexes
///   usage_map.cpp         which pages are a table's
///   data_page.cpp         a page of rows; rows that moved or were deleted
///   row.cpp               a row's columns
///   column_value.cpp      a column's value; long_value.cpp: memos and OLE values; text.cpp: texts
///   index_page.cpp        a page of an index
///
/// In the tables there, offsets and sizes are in bytes, 3 | 4 means Jet 3 | Jet 4, and numbers are stored
/// with their least significant byte first where nothing else is said. Fields that are not read here are left
/// out.
///
/// Sources, for this reader as well as for tools/make_database, which shares no code with it:
///   1. files that Access 97 and Access 2000 to 2003 wrote, byte by byte: 272 of them, with 1,672,761 values
///      compared with what two other readers make of them;
///   2. the description of the format that comes with mdbtools (its file HACKING), where it agrees with 1.
/// Where a table names no source, it is both.
namespace platform::jet {

/// The two formats that are read: Jet 3 (Access 97) and Jet 4 (Access 2000 to 2003).
enum class Format { kJet3, kJet4 };

/// What a page holds: its first byte.
enum class PageType : std::uint8_t {
    kData = 1,
    kDefinition = 2,
    kIndexNode = 3,
    kIndexLeaf = 4,
    kUsageMap = 5
};

/// Where things stand in the pages of one format; offsets and sizes in bytes.
struct Layout {
    std::size_t pageSize;
    std::size_t passwordSize;

    struct Data {
        std::size_t rowCount;
        std::size_t rowOffsets;
    } data;

    struct Definition {
        std::size_t rowCount;
        std::size_t variableColumnCount;
        std::size_t columnCount;
        std::size_t indexCount;
        std::size_t usageMap;
        std::size_t end;
        std::size_t indexPlaceSize;  // one for each index, between the fixed part and the columns
    } definition;

    struct Column {
        std::size_t size;
        std::size_t number;
        std::size_t variableIndex;
        std::size_t scale;
        std::size_t flags;
        std::size_t fixedOffset;
        std::size_t length;
    } column;

    struct IndexRecord {
        std::size_t size;
        std::size_t columns;
        std::size_t rootPage;
        std::size_t flags;
    } indexRecord;

    struct IndexPage {
        std::size_t next;
        std::size_t prefixLength;
        std::size_t prefixLengthSize;
        std::size_t entryMask;
        std::size_t entries;
    } indexPage;
};

inline constexpr Layout kJet3Layout{
    .pageSize = 2048,
    .passwordSize = 20,
    .data = {.rowCount = 8, .rowOffsets = 10},
    .definition = {.rowCount = 12,
                   .variableColumnCount = 23,
                   .columnCount = 25,
                   .indexCount = 31,
                   .usageMap = 35,
                   .end = 43,
                   .indexPlaceSize = 8},
    .column = {.size = 18,
               .number = 1,
               .variableIndex = 3,
               .scale = 12,
               .flags = 13,
               .fixedOffset = 14,
               .length = 16},
    .indexRecord = {.size = 39, .columns = 0, .rootPage = 34, .flags = 38},
    .indexPage = {.next = 12, .prefixLength = 20, .prefixLengthSize = 1, .entryMask = 0x16, .entries = 0xF8},
};

inline constexpr Layout kJet4Layout{
    .pageSize = 4096,
    .passwordSize = 40,
    .data = {.rowCount = 12, .rowOffsets = 14},
    .definition = {.rowCount = 16,
                   .variableColumnCount = 43,
                   .columnCount = 45,
                   .indexCount = 51,
                   .usageMap = 55,
                   .end = 63,
                   .indexPlaceSize = 12},
    .column = {.size = 25,
               .number = 5,
               .variableIndex = 7,
               .scale = 12,
               .flags = 15,
               .fixedOffset = 21,
               .length = 23},
    .indexRecord = {.size = 52, .columns = 4, .rootPage = 38, .flags = 46},
    .indexPage = {.next = 16, .prefixLength = 24, .prefixLengthSize = 2, .entryMask = 0x1B, .entries = 0x1E0},
};

[[nodiscard]] constexpr const Layout& LayoutOf(Format format)
{
    return format == Format::kJet3 ? kJet3Layout : kJet4Layout;
}

}  // namespace platform::jet
