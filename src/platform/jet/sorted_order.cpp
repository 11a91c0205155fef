#include "platform/jet/sorted_order.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

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

}  // namespace

std::vector<RowPosition> PositionsBySorting(const PageFile& file, const TableDefinition& table,
                                            const Column& column)
{
    std::vector<RowPosition> positions = SortedByColumn(file, table, column);
    // 0 stands in the definition where a program ended without closing the file.
    if (table.rowCount != 0 && positions.size() != table.rowCount)
        throw Damage("a table has " + std::to_string(positions.size()) + " rows instead of " +
                     std::to_string(table.rowCount));
    return positions;
}

}  // namespace platform::jet
