#include <optional>

#include "platform/conversions.h"
#include "platform/failure.h"
#include "platform/jet/column_value.h"
#include "platform/jet/damage_report.h"
#include "platform/jet/table_definition.h"
#include "platform/jet/table_scan.h"

namespace platform::jet {
namespace {

constexpr std::uint32_t kCataloguePage = 2;
constexpr const char* kCatalogueName = "MSysObjects";
constexpr std::int32_t kLocalTable = 1;
constexpr std::int32_t kLinkedServerTable = 4;
constexpr std::int32_t kLinkedTable = 6;
constexpr std::int32_t kPageMask = 0xFFFFFF;

const Column& ColumnOf(const TableDefinition& catalogue, const std::string& name)
{
    if (const Column* column = catalogue.Find(name))
        return *column;
    throw Damage("its catalogue has no column " + name);
}

/// A column's value; its default where it is null or of another type.
template <class Type>
Type ValueAs(const PageFile& file, const Row& row, const Column& column)
{
    const Value value = ReadValue(file, row, column);
    const Type* const found = std::get_if<Type>(&value);
    return found == nullptr ? Type{} : *found;
}

[[noreturn]] void NoTable(const PageFile& file, const std::string& name, bool linked)
{
    const std::string reason = linked ? " is only linked from another database into " : " is not in ";
    throw Failure(failure::kTableNotFound, "The table " + name + reason + file.Name());
}

/// Where the definition of a table stands. Failure: kTableNotFound.
std::uint32_t DefinitionPageOf(const PageFile& file, const std::string& name)
{
    const TableDefinition catalogue = ReadTableDefinition(file, kCataloguePage);
    const Column& idColumn = ColumnOf(catalogue, "Id");
    const Column& nameColumn = ColumnOf(catalogue, "Name");
    const Column& typeColumn = ColumnOf(catalogue, "Type");

    std::optional<std::uint32_t> page;
    bool linked = false;
    ForEachRow(file, catalogue, [&](RowPosition, const Row& row) {
        if (!SameName(ValueAs<std::string>(file, row, nameColumn), name))
            return;
        const auto type = ValueAs<std::int32_t>(file, row, typeColumn);
        if (type == kLocalTable)
            page = static_cast<std::uint32_t>(ValueAs<std::int32_t>(file, row, idColumn) & kPageMask);
        linked = linked || type == kLinkedTable || type == kLinkedServerTable;
    });
    if (!page)
        NoTable(file, name, linked);
    return *page;
}

}  // namespace

TableDefinition ReadCatalogueDefinition(const PageFile& file)
{
    return InTable(kCatalogueName, [&] { return ReadTableDefinition(file, kCataloguePage); });
}

TableDefinition FindTable(const PageFile& file, const std::string& name)
{
    const std::uint32_t page = InTable(kCatalogueName, [&] { return DefinitionPageOf(file, name); });
    TableDefinition table = InTable(name, [&] { return ReadTableDefinition(file, page); });
    table.name = name;
    return table;
}

}  // namespace platform::jet
