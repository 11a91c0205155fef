#include "make_database/row_encoder.h"

#include <algorithm>

namespace tools {
namespace {

using Offsets = std::vector<std::size_t>;

Bytes NullMask(const Cells& cells)
{
    Bytes mask((cells.size() + 7) / 8, '\0');
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i])
            SetBit(mask, 0, i);
    }
    return mask;
}

/// Offsets of the variable values and of their end, and the number of values.
void AppendJet4Offsets(Bytes& row, const Offsets& offsets)
{
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset)
        Append(row, static_cast<std::uint16_t>(*offset));
    Append(row, static_cast<std::uint16_t>(offsets.size() - 1));
}

void AppendJet3Offsets(Bytes& row, const Offsets& offsets, std::size_t maskSize)
{
    constexpr std::size_t kReach = 256;
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset)
        Append(row, static_cast<std::uint8_t>(*offset));

    // Readers take (row length - 1) / 256 jumps, and the jumps lengthen the row. One that the offsets do not
    // need stands behind the last of them.
    const std::size_t sizeWithoutJumps = row.size() + 1 + maskSize;
    std::size_t jumps = 0;
    while ((sizeWithoutJumps + jumps - 1) / kReach > jumps)
        ++jumps;
    for (std::size_t jump = jumps; jump > 0; --jump) {
        const auto first = std::ranges::lower_bound(offsets, jump * kReach);
        Append(row, static_cast<std::uint8_t>(first - offsets.begin()));
    }
    Append(row, static_cast<std::uint8_t>(offsets.size() - 1));
}

}  // namespace

std::size_t FixedSize(ColumnType type)
{
    switch (type) {
        case ColumnType::kInteger:
            return 2;
        case ColumnType::kLong:
            return 4;
        case ColumnType::kDateTime:
            return 8;
        case ColumnType::kText:
        case ColumnType::kOle:
        case ColumnType::kMemo:
            break;
    }
    return 0;
}

Bytes EncodeRow(const Layout& layout, std::span<const Column> columns, const Cells& cells)
{
    Bytes row;
    if (layout.IsJet4())
        Append(row, static_cast<std::uint16_t>(columns.size()));
    else
        Append(row, static_cast<std::uint8_t>(columns.size()));
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (const std::size_t size = FixedSize(columns[i].type))
            row += cells[i].value_or(Bytes(size, '\0'));
    }
    Offsets offsets;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (FixedSize(columns[i].type) == 0) {
            offsets.push_back(row.size());
            row += cells[i].value_or(Bytes());
        }
    }
    offsets.push_back(row.size());
    const Bytes mask = NullMask(cells);
    if (layout.IsJet4())
        AppendJet4Offsets(row, offsets);
    else
        AppendJet3Offsets(row, offsets, mask.size());
    return row + mask;
}

}  // namespace tools
