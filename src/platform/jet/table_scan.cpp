#include "platform/jet/table_scan.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "platform/jet/damage_report.h"

namespace platform::jet {

namespace {

/// The pages that hold a table's rows. Its map may have pages of other kinds as well, such as those of its
/// long values.
void ForEachPage(const PageFile& file, const TableDefinition& table,
                 const std::function<void(std::uint32_t, const DataPage&)>& visit)
{
    for (const std::uint32_t number : MarkedPages(file, table.usageMap)) {
        const Page marked = file.ReadPage(number);
        if (!marked.Is(PageType::kData) || marked.Owner() != table.page)
            continue;
        const DataPage page(marked, file.PageLayout());
        OnPage(number, [&] {
            if (page.RowCount() > kMostRowsOnPage)
                throw Damage("it has more rows than a page can have");
            visit(number, page);
        });
    }
}

bool SaysItsFreeSpace(const DataPage& page)
{
    return page.FreeSpace() == page.StatedFreeSpace();
}

}  // namespace

void ForEachRow(const PageFile& file, const TableDefinition& table,
                const std::function<void(RowPosition, const Row&)>& visit)
{
    ForEachPage(file, table, [&](std::uint32_t number, const DataPage& page) {
        for (std::size_t i = 0; i < page.RowCount(); ++i)
            if (std::optional<StoredRow> stored = RowPlacedAt(file, page, i))
                visit(PositionOf(number, static_cast<std::uint8_t>(i)),
                      Row(*std::move(stored), table, file.FileFormat()));
    });
}

bool PagesVouchForRows(const PageFile& file, const TableDefinition& table)
{
    const std::vector<std::uint32_t> marked = MarkedPages(file, table.usageMap);
    const std::vector<std::uint32_t> free = FreePages(file);
    for (std::uint32_t number = 1; number < file.PageCount(); ++number) {
        const Page page = file.ReadPage(number);
        const bool isOwn = page.Is(PageType::kData) && page.Owner() == table.page;
        const bool isMarked = std::ranges::binary_search(marked, number);
        const bool isLost = isOwn && !isMarked && !std::ranges::binary_search(free, number);
        if (isLost || (isMarked && !(isOwn && SaysItsFreeSpace(DataPage(page, file.PageLayout())))))
            return false;
    }
    return true;
}

std::size_t ExpectedRows(const PageFile& file, const TableDefinition& table)
{
    if (table.rowCount > file.PageCount() * kMostRowsOnPage)
        throw Damage("a table counts more rows than the file can hold");
    return table.rowCount;
}

}  // namespace platform::jet
