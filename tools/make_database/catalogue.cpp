#include "make_database/catalogue.h"

#include <array>
#include <bit>

#include "make_database/row_encoder.h"
#include "make_database/table_definition.h"
#include "make_database/text_encoding.h"

namespace tools {
namespace {

constexpr std::array kColumns = {
    Column{"Id", ColumnType::kLong},
    Column{"ParentId", ColumnType::kLong},
    Column{"Name", ColumnType::kText},
    Column{"Type", ColumnType::kInteger},
    Column{"DateCreate", ColumnType::kDateTime},
    Column{"DateUpdate", ColumnType::kDateTime},
    Column{"Flags", ColumnType::kLong},
    Column{"LvProp", ColumnType::kOle},
};

constexpr std::uint32_t kTablesFolder = 0x0F000001;
constexpr std::uint16_t kLocalTable = 1;
constexpr std::uint32_t kSystemFlag = 0x80000000;

struct Entry {
    std::uint32_t definitionPage;
    std::string_view name;
    std::uint32_t flags;
};

Cells CellsOf(const Entry& entry, Format format, double created)
{
    const Bytes date = NumberBytes(std::bit_cast<std::uint64_t>(created));
    return {NumberBytes(entry.definitionPage),
            NumberBytes(kTablesFolder),
            EncodeText(entry.name, format, true),
            NumberBytes(kLocalTable),
            date,
            date,
            NumberBytes(entry.flags),
            std::nullopt};
}

}  // namespace

void WriteCatalogue(PageOutput& output, UsageMapPage& maps, std::uint32_t transPage, double created)
{
    const std::array entries = {Entry{kCataloguePage, "MSysObjects", kSystemFlag},
                                Entry{transPage, "trans", 0}};
    RowPages rows(output, kCataloguePage);
    for (const Entry& entry : entries)
        rows.Add(
            EncodeRow(output.FileLayout(), kColumns, CellsOf(entry, output.FileLayout().format, created)));
    rows.Flush();

    const TableDefinition definition = {.kind = TableKind::kSystem,
                                        .columns = kColumns,
                                        .rowCount = entries.size(),
                                        .maps = {maps.Add(rows.Pages()), maps.Add({})},
                                        .longValueMaps = {maps.Add({}), maps.Add({})},
                                        .primaryKey = std::nullopt};
    output.Write(kCataloguePage, BuildTableDefinition(output.FileLayout(), definition));
}

}  // namespace tools
