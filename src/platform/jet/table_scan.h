#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/jet/page_file.h"
#include "platform/jet/row.h"
#include "platform/jet/table_definition.h"

/// The rows of a table in the order of storage (table_scan.cpp), and the maps that tell its pages (usage_map.cpp).
namespace platform::jet {

/// Visits every row of a table in the order of storage, with its position. Reads each page of the table once;
/// a row that has moved is read when its first place is met. Throws Damage.
void ForEachRow(const PageFile& file, const TableDefinition& table,
                const std::function<void(RowPosition, const Row&)>& visit);

/// Whether a table's pages show that none of them is missing and none has lost a row from its list. The
/// table's map must mark no other page than those of the table, and all of them but such as the file's own
/// map has for free. Each page must have as much free space as it says. Reads every page of the file. Throws
/// Damage.
[[nodiscard]] bool PagesVouchForRows(const PageFile& file, const TableDefinition& table);

/// How many rows to make room for. Throws Damage where the definition counts more than the file can hold.
[[nodiscard]] std::size_t ExpectedRows(const PageFile& file, const TableDefinition& table);

/// The pages that a usage map marks, in ascending order. Maps are either one bitmap that starts at any page,
/// or a list of pages that hold a bitmap each. Throws Damage, also for a page that the file does not have.
[[nodiscard]] std::vector<std::uint32_t> MarkedPages(const PageFile& file, RowPosition map);

/// The pages that belong to no table any more, in ascending order. They still hold what they held last.
/// Throws Damage.
[[nodiscard]] std::vector<std::uint32_t> FreePages(const PageFile& file);

}  // namespace platform::jet
