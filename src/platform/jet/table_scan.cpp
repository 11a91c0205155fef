#include "platform/jet/table_scan.h"

#include <optional>
#include <string>
#include <utility>

#include "platform/jet/usage_map.h"

namespace platform::jet {

void ForEachRow(const PageFile& file, const TableDefinition& table,
                const std::function<void(RowPosition, const Row&)>& visit)
{
    for (const std::uint32_t number : MarkedPages(file, table.usageMap)) {
        const Page marked = file.ReadPage(number);
        // A table's map may hold pages of other kinds as well, such as those of its long values.
        if (!marked.Is(PageType::kData) || marked.Owner() != table.page)
            continue;
        const DataPage page(marked, file.PageLayout());
        if (page.RowCount() > kMostRowsOnPage)
            throw Damage("page " + std::to_string(number) + " has more rows than a page can have");
        for (std::size_t i = 0; i < page.RowCount(); ++i)
            if (std::optional<StoredRow> stored = RowPlacedAt(file, page, i))
                visit(PositionOf(number, static_cast<std::uint8_t>(i)),
                      Row(*std::move(stored), table, file.FileFormat()));
    }
}

std::size_t ExpectedRows(const PageFile& file, const TableDefinition& table)
{
    if (table.rowCount > file.PageCount() * kMostRowsOnPage)
        throw Damage("a table counts more rows than the file can hold");
    return table.rowCount;
}

}  // namespace platform::jet
