#include "platform/jet/row_order.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "platform/jet/damage_report.h"
#include "platform/jet/index_page.h"
#include "platform/jet/table_scan.h"

namespace platform::jet {
namespace {

/// More levels than this are a circle.
constexpr int kMostLevels = 32;

bool Serves(const Index& index, const Column& column)
{
    return index.parts.size() == 1 && index.parts[0].column == column.number && index.parts[0].ascending &&
           !index.leavesOutNulls;
}

/// The leftmost leaf; 0 where a node is empty.
std::uint32_t FirstLeaf(const PageFile& file, std::uint32_t number)
{
    std::string entry;
    for (int level = 0; level < kMostLevels; ++level) {
        if (file.ReadPage(number).Is(PageType::kIndexLeaf))
            return number;
        const Page page = file.ReadPage(number, PageType::kIndexNode);
        number = OnPage(number, [&]() -> std::uint32_t {
            const IndexPage node(page.View(), file.PageLayout());
            if (node.EntryCount() == 0)
                return 0;
            node.GetEntry(0, entry);
            return PageBelow(entry);
        });
        if (number == 0)
            return 0;
    }
    throw Damage("an index has no leaves");
}

/// Walks the leaves from left to right: the last one may be in no node.
class LeafWalk {
public:
    /// An index of more entries than `mostEntries` is not of that many rows.
    LeafWalk(const PageFile& file, const TableDefinition& table, std::size_t mostEntries)
        : file_(file), table_(table), mostEntries_(mostEntries)
    {
        positions_.reserve(mostEntries);
    }

    /// False where the entries are out of order or too many.
    bool Walk(std::uint32_t leaf)
    {
        while (leaf != 0) {
            if (!visited_.insert(leaf).second)
                throw Damage("the pages of an index go in a circle");
            const std::optional<std::uint32_t> next = OnPage(leaf, [&] { return AddLeaf(leaf); });
            if (!next)
                return false;
            leaf = *next;
        }
        return true;
    }

    [[nodiscard]] std::vector<RowPosition> ReleasePositions() { return std::move(positions_); }

private:
    /// The leaf to the right; nothing where entries are out of order or too many.
    std::optional<std::uint32_t> AddLeaf(std::uint32_t leaf)
    {
        const Page page = file_.ReadPage(leaf, PageType::kIndexLeaf);
        if (page.Owner() != table_.page)
            throw Damage("an index has a page of another table");
        const IndexPage entries(page.View(), file_.PageLayout());
        return AddEntries(entries) ? std::optional(entries.NextPage()) : std::nullopt;
    }

    bool AddEntries(const IndexPage& page)
    {
        for (std::size_t i = 0; i < page.EntryCount(); ++i) {
            page.GetEntry(i, entry_);
            if (entry_ <= previous_ || positions_.size() == mostEntries_)
                return false;
            positions_.push_back(PositionIn(entry_));
            std::swap(entry_, previous_);
        }
        return true;
    }

    const PageFile& file_;
    const TableDefinition& table_;
    std::size_t mostEntries_;
    std::vector<RowPosition> positions_;
    std::unordered_set<std::uint32_t> visited_;
    std::string entry_;
    std::string previous_;
};

bool AllDifferent(const std::vector<RowPosition>& positions, std::uint64_t pageCount)
{
    std::vector<bool> seen(pageCount * kMostRowsOnPage);
    for (const RowPosition position : positions) {
        if (position.packed >= seen.size() || seen[position.packed])
            return false;
        seen[position.packed] = true;
    }
    return true;
}

/// The positions in an index that has as many entries as there are rows; nothing for any other.
std::optional<std::vector<RowPosition>> PositionsIn(const PageFile& file, const TableDefinition& table,
                                                    const Index& index, std::size_t rows)
{
    LeafWalk walk(file, table, rows);
    if (!walk.Walk(FirstLeaf(file, index.rootPage)))
        return std::nullopt;
    std::vector<RowPosition> positions = walk.ReleasePositions();
    return positions.size() == rows ? std::optional(std::move(positions)) : std::nullopt;
}

/// `rows` are the positions of all rows in the order of storage.
bool HasExactly(const PageFile& file, const TableDefinition& table, const Index& index,
                const std::vector<RowPosition>& rows)
{
    try {
        auto positions = PositionsIn(file, table, index, rows.size());
        if (positions)
            std::ranges::sort(*positions);
        return positions == rows;
    } catch (const Damage&) {
        return false;
    }
}

}  // namespace

std::optional<std::vector<RowPosition>> PositionsByIndex(const PageFile& file, const TableDefinition& table,
                                                         const Column& column)
{
    for (const Index& index : table.indexes) {
        // A stored count of 0 rows may be wrong, so an index cannot be checked against it.
        if (!Serves(index, column) || table.rowCount == 0)
            continue;
        auto positions = PositionsIn(file, table, index, ExpectedRows(file, table));
        if (positions && AllDifferent(*positions, file.PageCount()))
            return positions;
    }
    return std::nullopt;
}

IndexVerdict WhatIndexesSay(const PageFile& file, const TableDefinition& table, std::vector<RowPosition> rows)
{
    IndexVerdict verdict = IndexVerdict::kNone;
    std::ranges::sort(rows);
    for (const Index& index : table.indexes) {
        if (index.leavesOutNulls)
            continue;
        if (HasExactly(file, table, index, rows))
            return IndexVerdict::kTheseRows;
        verdict = IndexVerdict::kOtherRows;
    }
    return verdict;
}

}  // namespace platform::jet
