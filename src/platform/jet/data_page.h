#pragma once

#include <compare>
#include <cstdint>
#include <optional>

#include "platform/jet/byte_view.h"
#include "platform/jet/layout.h"
#include "platform/jet/page_file.h"

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

/// What stands in one row's place on a data page.
enum class SlotKind {
    kRow,
    kPointer,   // the row is elsewhere; this is its place in the order of storage
    kMovedRow,  // belongs to a pointer elsewhere; a copy that nothing points to is stale
    kDeleted
};

struct Slot {
    SlotKind kind;
    ByteView bytes;
};

/// A page of rows, of a table or of long values.
class DataPage {
public:
    /// `page` is of PageType::kData.
    DataPage(Page page, const Layout& layout);

    [[nodiscard]] std::uint32_t Owner() const { return page_.Owner(); }
    [[nodiscard]] std::size_t RowCount() const { return rowCount_; }

    /// Bytes between the list of rows and the last row: counted, and as the page itself says. Throws Damage.
    [[nodiscard]] std::size_t FreeSpace() const;
    [[nodiscard]] std::size_t StatedFreeSpace() const;

    /// Throws Damage for a row that the page does not have.
    [[nodiscard]] Slot SlotAt(std::size_t row) const;

    [[nodiscard]] const Page& Underlying() const { return page_; }

private:
    [[nodiscard]] std::uint16_t OffsetField(std::size_t row) const;

    Page page_;
    const Layout& layout_;
    std::size_t rowCount_;
};

/// The bytes of a row together with the page that holds them.
struct StoredRow {
    Page page;
    ByteView bytes;
};

/// The row at a position, wherever it has moved since. `owner` is whose row it must be. Throws Damage where
/// there is no such row.
[[nodiscard]] StoredRow FetchRow(const PageFile& file, RowPosition position, std::uint32_t owner);

/// The row that has its place on a page, wherever it has moved since; nothing where the place holds no row of
/// its own. Throws Damage.
[[nodiscard]] std::optional<StoredRow> RowPlacedAt(const PageFile& file, const DataPage& page,
                                                   std::size_t row);

}  // namespace platform::jet
