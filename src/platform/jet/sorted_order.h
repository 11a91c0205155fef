#pragma once

#include <vector>

#include "platform/jet/page_file.h"
#include "platform/jet/row_position.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// The positions of all rows in ascending order of a column, nulls first, equal keys in the order of storage.
/// Reads each page of the table once and takes 16 bytes a row for numbers. Throws Damage, also where the
/// table has not as many rows as its definition says and nothing shows that these are all.
[[nodiscard]] std::vector<RowPosition> PositionsBySorting(const PageFile& file, const TableDefinition& table,
                                                          const Column& column);

}  // namespace platform::jet
