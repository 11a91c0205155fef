#pragma once

#include <compare>
#include <cstdint>

namespace platform::jet {

/// Where a row is stored: 24 bits of page, 8 bits of row on that page, as the file's own pointers have it.
/// Positions order as the rows are stored.
struct RowPosition {
    std::uint32_t packed = 0;

    [[nodiscard]] constexpr std::uint32_t Page() const { return packed >> 8; }
    [[nodiscard]] constexpr std::uint8_t Row() const { return static_cast<std::uint8_t>(packed); }
    constexpr auto operator<=>(const RowPosition&) const = default;
};

inline constexpr std::uint32_t kMostRowsOnPage = 256;

[[nodiscard]] constexpr RowPosition PositionOf(std::uint32_t page, std::uint8_t row)
{
    return {page << 8 | row};
}

}  // namespace platform::jet
