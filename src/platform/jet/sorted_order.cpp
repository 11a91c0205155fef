#include "platform/jet/sorted_order.h"

#include <algorithm>
#include <optional>
#include <string>

#include "platform/jet/sort_key.h"
#include "platform/jet/table_scan.h"

namespace platform::jet {
namespace {

/// A number's key in two halves, so that an entry takes no more than 12 bytes.
class HalvedKey {
public:
    explicit HalvedKey(std::uint64_t key)
        : high_(static_cast<std::uint32_t>(key >> 32)), low_(static_cast<std::uint32_t>(key))
    {}
    bool operator==(const HalvedKey&) const = default;
    bool operator<(const HalvedKey& other) const { return Whole() < other.Whole(); }

private:
    [[nodiscard]] std::uint64_t Whole() const { return std::uint64_t{high_} << 32 | low_; }

    std::uint32_t high_;
    std::uint32_t low_;
};

template <class Key>
struct Entry {
    Key key;
    RowPosition position;  // decides between equal keys

    bool operator<(const Entry& other) const
    {
        return key == other.key ? position < other.position : key < other.key;
    }
};

/// `keyOf` gives a row's key, or nothing for null.
template <class Key, class KeyOf>
std::vector<RowPosition> Sorted(const PageFile& file, const TableDefinition& table, KeyOf keyOf)
{
    std::vector<RowPosition> positions;
    std::vector<Entry<Key>> entries;
    entries.reserve(ExpectedRows(file, table));
    ForEachRow(file, table, [&](RowPosition position, const Row& row) {
        if (std::optional<Key> key = keyOf(row))
            entries.push_back({*std::move(key), position});
        else
            positions.push_back(position);
    });
    std::sort(entries.begin(), entries.end());
    positions.reserve(positions.size() + entries.size());
    for (const Entry<Key>& entry : entries)
        positions.push_back(entry.position);
    return positions;
}

std::vector<RowPosition> SortedByColumn(const PageFile& file, const TableDefinition& table,
                                        const Column& column)
{
    if (!IsOrderedByNumber(column.type))
        return Sorted<std::string>(file, table,
                                   [&](const Row& row) { return ByteSortKey(file, row, column); });
    return Sorted<HalvedKey>(file, table, [&](const Row& row) -> std::optional<HalvedKey> {
        const std::optional<std::uint64_t> key = NumberSortKey(row, column);
        return key ? std::optional(HalvedKey(*key)) : std::nullopt;
    });
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
