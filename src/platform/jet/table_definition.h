#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/jet/data_page.h"
#include "platform/jet/page_file.h"

/// What a table is: its definition (table_definition.cpp), and how the catalogue names it (catalogue.cpp).
namespace platform::jet {

enum class ColumnType : std::uint8_t {
    kBoolean = 1,
    kByte = 2,
    kInteger = 3,
    kLong = 4,
    kCurrency = 5,
    kSingle = 6,
    kDouble = 7,
    kDate = 8,
    kBinary = 9,
    kText = 10,
    kOle = 11,
    kMemo = 12,
    kGuid = 15,
    kDecimal = 16
};

struct Column {
    std::string name;             // UTF-8
    ColumnType type;              // may be none of the known ones
    std::uint16_t number;         // its bit in a row's null mask
    std::uint16_t variableIndex;  // its place among the columns of variable length
    bool fixed;                   // stored at fixedOffset, not among those of variable length
    std::uint16_t fixedOffset;    // bytes from the first fixed column
    std::uint16_t length;         // bytes, of a fixed column
    std::uint8_t scale;           // decimal places of a decimal
};

struct Index {
    struct Part {
        std::uint16_t column;
        bool ascending;
    };
    std::vector<Part> parts;
    std::uint32_t rootPage;
    bool leavesOutNulls;
};

/// The description of one table.
struct TableDefinition {
    std::string name;                       // as asked for, in descriptions of damage
    std::uint32_t page = 0;                 // where it stands; the table's pages name it as their owner
    std::uint32_t rowCount = 0;             // as stored: a hint, wrong where the file was not properly closed
    std::uint16_t variableColumnCount = 0;  // deleted columns count as well
    RowPosition usageMap;                   // which pages are the table's
    std::vector<Column> columns;
    std::vector<Index> indexes;

    /// The column of this name, in any case of its letters; null where there is none.
    [[nodiscard]] const Column* Find(const std::string& columnName) const;
};

/// Reads the definition that begins on a page and may go on over several. Throws Damage.
[[nodiscard]] TableDefinition ReadTableDefinition(const PageFile& file, std::uint32_t page);

/// Finds a table in the catalogue and reads its definition; the name matches in any case of its letters.
/// Failure: kTableNotFound, also for a table that is only linked from another database. Throws Damage.
[[nodiscard]] TableDefinition FindTable(const PageFile& file, const std::string& name);

/// Reads the definition of the catalogue itself, which every database has. Throws Damage.
[[nodiscard]] TableDefinition ReadCatalogueDefinition(const PageFile& file);

}  // namespace platform::jet
