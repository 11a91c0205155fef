#pragma once

#include <optional>
#include <vector>

#include "platform/jet/page_file.h"
#include "platform/jet/table_definition.h"

/// In which order rows come. index_order.cpp asks the indexes, sorted_order.cpp sorts and decides between the two.
namespace platform::jet {

/// The positions of all rows of a table in ascending order of a column, nulls first, equal keys in the order
/// of storage: from an index where one serves, otherwise by sorting. Throws Damage.
[[nodiscard]] std::vector<RowPosition> PositionsInOrder(const PageFile& file, const TableDefinition& table,
                                                        const Column& column);

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

/// The positions of all rows in ascending order of a column, nulls first, equal keys in the order of storage.
/// Reads each page of the table once and takes 16 bytes a row for numbers. Throws Damage, also where the
/// table has not as many rows as its definition says and nothing shows that these are all.
[[nodiscard]] std::vector<RowPosition> PositionsBySorting(const PageFile& file, const TableDefinition& table,
                                                          const Column& column);

}  // namespace platform::jet
