#include "platform/jet/sorted_order.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "platform/jet/index_order.h"
#include "platform/jet/number_entry.h"
#include "platform/jet/sort_key.h"
#include "platform/jet/table_scan.h"

namespace platform::jet {
namespace {

class ByteEntry {
public:
    ByteEntry(std::string key, RowPosition position) : key_(std::move(key)), position_(position) {}

    [[nodiscard]] RowPosition Position() const { return position_; }

    /// The position decides between equal keys.
    bool operator<(const ByteEntry& other) const
    {
        return key_ == other.key_ ? position_ < other.position_ : key_ < other.key_;
    }

private:
    std::string key_;
    RowPosition position_;
};

void SortEntries(std::span<ByteEntry> entries)
{
    std::sort(entries.begin(), entries.end());
}

/// `keyOf` gives a row's key, or nothing for null.
template <class Entry, class KeyOf>
std::vector<RowPosition> Sorted(const PageFile& file, const TableDefinition& table, KeyOf keyOf)
{
    std::vector<RowPosition> positions;
    std::vector<Entry> entries;
    entries.reserve(ExpectedRows(file, table));
    ForEachRow(file, table, [&](RowPosition position, const Row& row) {
        if (auto key = keyOf(row))
            entries.emplace_back(*std::move(key), position);
        else
            positions.push_back(position);
    });
    SortEntries(std::span(entries));
    positions.reserve(positions.size() + entries.size());
    for (const Entry& entry : entries)
        positions.push_back(entry.Position());
    return positions;
}

std::vector<RowPosition> SortedByColumn(const PageFile& file, const TableDefinition& table,
                                        const Column& column)
{
    if (IsOrderedByNumber(column.type))
        return Sorted<NumberEntry>(file, table, [&](const Row& row) { return NumberSortKey(row, column); });
    return Sorted<ByteEntry>(file, table, [&](const Row& row) { return ByteSortKey(file, row, column); });
}

/// Whether the rows that were found are all of them, although the definition counts more or fewer.
///
/// The count is a hint: in 12 of 209 files that Access wrote it was wrong (0 instead of 2, 1,004 instead of
/// 2,305), as where a program ended without closing the file. But it also tells damage, so it is overruled by
/// a second witness only: an index that has these rows and no other or, for a table without one, the pages. To
/// refuse such a table would be the greater evil: one sound table in a hundred has a wrong count and no index,
/// and of randomly damaged files one in ten thousand gets by the pages with a row too few or too many.
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

}  // namespace platform::jet
