#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "make_database/bytes.h"
#include "make_database/page_writer.h"
#include "make_database/row_encoder.h"

namespace tools {

enum class TableKind : std::uint8_t { kUser = 0x4E, kSystem = 0x53 };

/// The primary key on the first column.
struct PrimaryKey {
    RowPointer usageMap;
    std::uint32_t rootPage;
};

/// The usage maps of a table, or of the long values of its columns.
struct UsageMaps {
    RowPointer ownedPages;
    RowPointer pagesWithRoom;
};

struct TableDefinition {
    TableKind kind;
    std::span<const Column> columns;
    std::uint32_t rowCount;
    UsageMaps maps;
    UsageMaps longValueMaps;
    std::optional<PrimaryKey> primaryKey;
};

/// The page that defines a table: counts, columns, names, indexes, usage maps. The table must fit one page
/// (source: definitions written by Access 97 and Access 2000).
[[nodiscard]] Bytes BuildTableDefinition(const Layout& layout, const TableDefinition& table);

}  // namespace tools
