#include "platform/jet/index_order.h"

#include <unordered_set>
#include <utility>

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
        const IndexPage node(page.View(), file.PageLayout());
        if (node.EntryCount() == 0)
            return 0;
        node.GetEntry(0, entry);
        number = PageBelow(entry);
    }
    throw Damage("an index has no leaves");
}

/// Walks the leaves from left to right: the last one may be in no node.
class LeafWalk {
public:
    LeafWalk(const PageFile& file, const TableDefinition& table) : file_(file), table_(table)
    {
        positions_.reserve(ExpectedRows(file, table));
    }

    /// False where the entries are out of order or more than the rows.
    bool Walk(std::uint32_t leaf)
    {
        while (leaf != 0) {
            if (!visited_.insert(leaf).second)
                throw Damage("the pages of an index go in a circle");
            const Page page = file_.ReadPage(leaf, PageType::kIndexLeaf);
            if (page.Owner() != table_.page)
                throw Damage("an index has a page of another table");
            const IndexPage entries(page.View(), file_.PageLayout());
            if (!AddEntries(entries))
                return false;
            leaf = entries.NextPage();
        }
        return true;
    }

    [[nodiscard]] std::vector<RowPosition> TakePositions() { return std::move(positions_); }

private:
    bool AddEntries(const IndexPage& page)
    {
        for (std::size_t i = 0; i < page.EntryCount(); ++i) {
            page.GetEntry(i, entry_);
            if (entry_ <= previous_ || positions_.size() == table_.rowCount)
                return false;
            positions_.push_back(PositionIn(entry_));
            std::swap(entry_, previous_);
        }
        return true;
    }

    const PageFile& file_;
    const TableDefinition& table_;
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

}  // namespace

std::optional<std::vector<RowPosition>> PositionsByIndex(const PageFile& file, const TableDefinition& table,
                                                         const Column& column)
{
    for (const Index& index : table.indexes) {
        // A stored count of 0 rows may be wrong, so an index cannot be checked against it.
        if (!Serves(index, column) || table.rowCount == 0)
            continue;
        LeafWalk walk(file, table);
        if (!walk.Walk(FirstLeaf(file, index.rootPage)))
            continue;
        std::vector<RowPosition> positions = walk.TakePositions();
        if (positions.size() == table.rowCount && AllDifferent(positions, file.PageCount()))
            return positions;
    }
    return std::nullopt;
}

}  // namespace platform::jet
