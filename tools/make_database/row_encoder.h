#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "make_database/bytes.h"
#include "make_database/layout.h"

namespace tools {

/// Column types by their number in the file.
enum class ColumnType : std::uint8_t {
    kInteger = 3,
    kLong = 4,
    kDateTime = 8,
    kText = 10,
    kOle = 11,
    kMemo = 12
};

struct Column {
    std::string_view name;
    ColumnType type;
};

/// Bytes that a value of this type takes in a row; 0 for types of variable length.
[[nodiscard]] std::size_t FixedSize(ColumnType type);

/// The encoded values of a row, one for each column; nothing for null.
using Cells = std::vector<std::optional<Bytes>>;

/// A row as data pages hold it: number of columns, fixed values in column order (zeros for null), variable
/// values, their offsets in reverse, their number, and a bit for each column that is not null. Jet 3 offsets
/// have one byte; the bytes that follow them name the column at which each further 256 begins (source: rows
/// written by Access 97 and Access 2000).
[[nodiscard]] Bytes EncodeRow(const Layout& layout, std::span<const Column> columns, const Cells& cells);

}  // namespace tools
