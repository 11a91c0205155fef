#pragma once

#include <cstddef>
#include <functional>

#include "platform/jet/page_file.h"
#include "platform/jet/row.h"
#include "platform/jet/row_position.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// Visits every row of a table in the order of storage, with its position. Reads each page of the table once;
/// a row that has moved is read when its first place is met. Throws Damage.
void ForEachRow(const PageFile& file, const TableDefinition& table,
                const std::function<void(RowPosition, const Row&)>& visit);

/// Whether a table's pages agree with each other that they are all and whole: its map marks pages of this table
/// alone and, but for pages that the file's own map has as free, every one of them; and each page says rightly
/// how much room its rows leave, as it would not if its list of rows had lost one. Reads every page of the file.
/// Throws Damage.
[[nodiscard]] bool PagesVouchForRows(const PageFile& file, const TableDefinition& table);

/// How many rows to make room for. Throws Damage where the definition counts more than the file can hold.
[[nodiscard]] std::size_t ExpectedRows(const PageFile& file, const TableDefinition& table);

}  // namespace platform::jet
