#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/jet/page_file.h"
#include "platform/jet/row.h"

namespace platform::jet {

/// True for columns whose order a number of 64 bits can tell; for the others it takes bytes.
[[nodiscard]] bool IsOrderedByNumber(ColumnType type);

/// A number that orders rows as the column's values do (True before False, as -1 is before 0); nothing for
/// null. Throws Damage.
[[nodiscard]] std::optional<std::uint64_t> NumberSortKey(const Row& row, const Column& column);

/// Bytes that order rows as the column's values do: decimals by value, GUIDs and binary by their bytes, texts
/// as TextSortKey has it. Of a memo the first 255 characters count, of an OLE value the first 510 bytes, as
/// in an index on it: values that are alike so far are equal keys, and no more of them is read. A column of
/// one length is at most a few KB. Empty for null. Throws Damage.
[[nodiscard]] std::string ByteSortKey(const PageFile& file, const Row& row, const Column& column);

}  // namespace platform::jet
