#pragma once

#include <optional>
#include <vector>

#include "platform/jet/page_file.h"
#include "platform/jet/row_position.h"
#include "platform/jet/table_definition.h"

namespace platform::jet {

/// The positions of all rows in ascending order of a column, taken from an index without reading a row.
/// Nothing where no index serves: on this column alone, ascending, with nulls, with its entries in order and
/// each row of the table in it once. Throws Damage.
[[nodiscard]] std::optional<std::vector<RowPosition>> PositionsByIndex(const PageFile& file,
                                                                       const TableDefinition& table,
                                                                       const Column& column);

/// What the indexes of a table tell of its rows. One that leaves out nulls tells nothing.
enum class IndexVerdict {
    kNone,       // there is no index to ask
    kTheseRows,  // one has an entry for each of these rows and no other
    kOtherRows
};

/// Asks the indexes of a table whether these are the positions of all its rows, in any order.
[[nodiscard]] IndexVerdict WhatIndexesSay(const PageFile& file, const TableDefinition& table,
                                          std::vector<RowPosition> rows);

}  // namespace platform::jet
