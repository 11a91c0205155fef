#include "platform/jet/row_order.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/jet/damage_report.h"
#include "platform/jet/sorting.h"
#include "platform/jet/table_scan.h"

namespace platform::jet {
namespace {

/// Reads the table once and keeps key and position of each row.
std::vector<RowPosition> SortedByNumber(const PageFile& file, const TableDefinition& table,
                                        const Column& column)
{
    std::vector<RowPosition> positions;
    std::vector<NumberEntry> entries;
    entries.reserve(ExpectedRows(file, table));
    ForEachRow(file, table, [&](RowPosition position, const Row& row) {
        if (const auto key = NumberSortKey(row, column))
            entries.emplace_back(*key, position);
        else
            positions.push_back(position);
    });
    SortEntries(entries);
    positions.reserve(positions.size() + entries.size());
    for (const NumberEntry& entry : entries)
        positions.push_back(entry.Position());
    return positions;
}

/// Reads the table once for the positions and then the rows again for their keys.
std::vector<RowPosition> SortedByBytes(const PageFile& file, const TableDefinition& table,
                                       const Column& column)
{
    std::vector<RowPosition> nulls;
    std::vector<RowPosition> others;
    ForEachRow(file, table, [&](RowPosition position, const Row& row) {
        (row.BytesOf(column) ? others : nulls).push_back(position);
    });
    SortByKey(others, [&](RowPosition position) {
        return OnPage(position.Page(), [&] {
            const Row row(FetchRow(file, position, table.page), table, file.FileFormat());
            return ByteSortKey(file, row, column);
        });
    });
    nulls.insert(nulls.end(), others.begin(), others.end());
    return nulls;
}

std::vector<RowPosition> SortedByColumn(const PageFile& file, const TableDefinition& table,
                                        const Column& column)
{
    return IsOrderedByNumber(column.type) ? SortedByNumber(file, table, column)
                                          : SortedByBytes(file, table, column);
}

/// Whether the rows that were found are all of them, although the definition counts more or fewer.
///
/// The count is a hint: in 12 of 209 files that Access wrote it was wrong (0 instead of 2, 1,004 instead of
/// 2,305), as where a program ended without closing the file. But it also tells damage, so it is overruled by
/// a second witness only: an index that has these rows and no other or, for a table without one, the pages.
/// To refuse such a table would be the greater evil: one sound table in a hundred has a wrong count and no
/// index, and of randomly damaged files one in ten thousand gets by the pages with a row too few or too many.
/// A table in which no row is found is refused whoever agrees: nothing is lost by it, for there is nothing to
/// send, and the record says why.
bool AreAllRows(const PageFile& file, const TableDefinition& table, const std::vector<RowPosition>& rows)
{
    if (rows.empty())
        return false;
    switch (WhatIndexesSay(file, table, rows)) {
        case IndexVerdict::kTheseRows:
            return true;
        case IndexVerdict::kOtherRows:
            return false;
        default:
            return PagesVouchForRows(file, table);
    }
}

}  // namespace

std::vector<RowPosition> PositionsBySorting(const PageFile& file, const TableDefinition& table,
                                            const Column& column)
{
    std::vector<RowPosition> positions = SortedByColumn(file, table, column);
    if (positions.size() != table.rowCount && !AreAllRows(file, table, positions))
        throw Damage("a table has " + std::to_string(positions.size()) + " rows instead of " +
                     std::to_string(table.rowCount));
    return positions;
}

std::vector<RowPosition> PositionsInOrder(const PageFile& file, const TableDefinition& table,
                                          const Column& column)
{
    if (auto positions = PositionsByIndex(file, table, column))
        return *std::move(positions);
    return PositionsBySorting(file, table, column);
}

}  // namespace platform::jet
