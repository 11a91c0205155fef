#include "platform/jet/data_page.h"

#include <string>
#include <utility>

#include "platform/jet/damage_report.h"

/// Data page
///
///   OFFSET 3|4   SIZE     DESCRIPTION
///   0|0          1        1
///   2|2          2        free bytes between the list of rows and the last row
///   4|4          4        page of the table's definition, or the letters LVAL
///   8|12         2        number of rows
///   10|14        2 x n    for each row, its offset in 13 bits and two flags
///   ...                   free
///   to the end            rows: the first one last. A row ends where the one before it begins.
///
/// A row that grows and no longer fits its page moves to another one and leaves a pointer behind. Its place
/// stays the first one, in indexes as well as in the order of storage. The flags tell:
///
///   0x0000  a row
///   0x4000  a pointer, four bytes: row and page where the row is now
///   0x8000  a row that moved here. It counts where the pointer to it stands and must be passed over when a
///           page is read from top to bottom, or it would come twice. A row that moves on leaves a copy of
///           itself behind, to which nothing points: it is out of date.
///   0xC000  a deleted row
///
/// How we know: in all files compared each pointer leads to a row of 0x8000, and only if such rows are passed
/// over in a scan are there as many rows as definitions and indexes count. The description of mdbtools takes
/// 0x8000 for deleted, which leaves open what the pointers lead to.
namespace platform::jet {
namespace {

constexpr std::size_t kFreeSpace = 2;
constexpr std::uint16_t kOffsetMask = 0x1FFF;
constexpr std::uint16_t kMovedFlag = 0x8000;
constexpr std::uint16_t kPointerFlag = 0x4000;

/// More hops than this from a row's place to the row itself are a circle.
constexpr int kMostHops = 16;

SlotKind KindOf(std::uint16_t offsetField)
{
    switch (offsetField & (kMovedFlag | kPointerFlag)) {
        case kPointerFlag:
            return SlotKind::kPointer;
        case kMovedFlag:
            return SlotKind::kMovedRow;
        case kMovedFlag | kPointerFlag:
            return SlotKind::kDeleted;
        default:
            return SlotKind::kRow;
    }
}

[[noreturn]] void NoRowAt(RowPosition position)
{
    throw Damage("there is no row " + std::to_string(position.Row()) + " on page " +
                 std::to_string(position.Page()));
}

DataPage OwnedPage(const PageFile& file, RowPosition position, std::uint32_t owner)
{
    DataPage page(file.ReadPage(position.Page(), PageType::kData), file.PageLayout());
    if (page.Owner() != owner)
        NoRowAt(position);
    return page;
}

StoredRow FollowPointer(const PageFile& file, RowPosition target, std::uint32_t owner)
{
    for (int hop = 0; hop < kMostHops; ++hop) {
        const DataPage page = OwnedPage(file, target, owner);
        const Slot slot = page.SlotAt(target.Row());
        if (slot.kind == SlotKind::kMovedRow)
            return {page.Underlying(), slot.bytes};
        if (slot.kind != SlotKind::kPointer)
            NoRowAt(target);
        target = {slot.bytes.U32(0)};
    }
    throw Damage("a row that has moved cannot be found");
}

}  // namespace

DataPage::DataPage(Page page, const Layout& layout)
    : page_(std::move(page)), layout_(layout), rowCount_(page_.View().U16(layout.data.rowCount))
{}

Slot DataPage::SlotAt(std::size_t row) const
{
    if (row >= rowCount_)
        throw Damage("a page has fewer rows than are looked for");
    const std::uint16_t field = OffsetField(row);
    const std::size_t begin = field & kOffsetMask;
    const std::size_t end = row == 0 ? layout_.pageSize : OffsetField(row - 1) & kOffsetMask;
    if (begin > end)
        throw Damage("the rows of a page overlap");
    return {KindOf(field), page_.View().Slice(begin, end - begin)};
}

std::size_t DataPage::FreeSpace() const
{
    const std::size_t listEnd = layout_.data.rowOffsets + 2 * rowCount_;
    const std::size_t lastRow = rowCount_ == 0 ? layout_.pageSize : OffsetField(rowCount_ - 1) & kOffsetMask;
    if (lastRow < listEnd)
        throw Damage("the rows of a page overlap");
    return lastRow - listEnd;
}

std::size_t DataPage::StatedFreeSpace() const
{
    return page_.View().U16(kFreeSpace);
}

std::uint16_t DataPage::OffsetField(std::size_t row) const
{
    return page_.View().U16(layout_.data.rowOffsets + 2 * row);
}

StoredRow FetchRow(const PageFile& file, RowPosition position, std::uint32_t owner)
{
    return OnPage(position.Page(), [&] {
        std::optional<StoredRow> stored = RowPlacedAt(file, OwnedPage(file, position, owner), position.Row());
        if (!stored)
            NoRowAt(position);
        return *std::move(stored);
    });
}

std::optional<StoredRow> RowPlacedAt(const PageFile& file, const DataPage& page, std::size_t row)
{
    const Slot slot = page.SlotAt(row);
    switch (slot.kind) {
        case SlotKind::kRow:
            return StoredRow{page.Underlying(), slot.bytes};
        case SlotKind::kPointer:
            return FollowPointer(file, {slot.bytes.U32(0)}, page.Owner());
        default:
            return std::nullopt;
    }
}

}  // namespace platform::jet
