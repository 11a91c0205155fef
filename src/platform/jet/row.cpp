#include "platform/jet/row.h"

#include <utility>

/// Row
///
/// In front stand the columns of fixed length and then those of variable length; the rest is read from the
/// end:
///
///   Jet 4: SIZE   DESCRIPTION                        Jet 3: SIZE   DESCRIPTION
///   2             number of columns                  1             number of columns
///   n             columns of fixed length            n             columns of fixed length
///   n             columns of variable length         n             columns of variable length
///   2             offset of their end                1             offset of their end
///   2 x v         their offsets, the last first      1 x v         their offsets, the last first
///   2             v, the number of these             j             jumps, the last first
///   (c + 7) / 8   null mask                          1             v
///                                                    (c + 7) / 8   null mask
///
/// Bit b of the null mask belongs to the column of number b; 1: not null. A boolean has no other place: the
/// bit is its value. A row may have fewer columns than its table: the others were added to the table later
/// and are null. The row has v, the offsets and the jumps only where the table has columns of variable
/// length.
///
/// A jump says what an offset of one byte cannot: how many times 256 to add. The first jump is the index of
/// the first variable column that begins at 256 or later, the second that of the first one at 512 or later.
/// Access makes room for (length of the row - 1) / 256 jumps. Where only offsets and mask reach past such a
/// border, but no column, the last of them is a dummy.
namespace platform::jet {
namespace {

constexpr std::size_t kJumpLength = 256;

std::size_t Before(std::size_t end, std::size_t size)
{
    if (size > end)
        throw Damage("a row is shorter than its parts");
    return end - size;
}

}  // namespace

Row::Row(StoredRow stored, const TableDefinition& table, Format format)
    : stored_(std::move(stored)), format_(format)
{
    const ByteView& bytes = stored_.bytes;
    columnCount_ = format == Format::kJet3 ? bytes.U8(0) : bytes.U16(0);
    const std::size_t maskSize = (columnCount_ + 7) / 8;
    offsetsEnd_ = Before(bytes.Size(), maskSize);
    mask_ = bytes.From(offsetsEnd_);
    if (table.variableColumnCount == 0)
        return;
    if (format == Format::kJet3)
        ReadJet3Tail();
    else
        ReadJet4Tail();
}

void Row::ReadJet3Tail()
{
    const ByteView& bytes = stored_.bytes;
    offsetsEnd_ = Before(offsetsEnd_, 1);
    variableCount_ = bytes.U8(offsetsEnd_);
    std::size_t jumpCount = (bytes.Size() - 1) / kJumpLength;
    const std::size_t jumpsEnd = offsetsEnd_;
    offsetsEnd_ = Before(offsetsEnd_, jumpCount);
    // The offsets themselves count in the row's length: where no data reaches the last jump, it is a dummy.
    if (Before(offsetsEnd_, 1 + variableCount_) / kJumpLength < jumpCount)
        --jumpCount;
    jumps_ = bytes.Slice(jumpsEnd - jumpCount, jumpCount);
}

void Row::ReadJet4Tail()
{
    offsetsEnd_ = Before(offsetsEnd_, 2);
    variableCount_ = stored_.bytes.U16(offsetsEnd_);
}

std::size_t Row::FixedStart() const
{
    return format_ == Format::kJet3 ? 1 : 2;
}

bool Row::MaskBit(const Column& column) const
{
    return column.number < columnCount_ && (mask_.U8(column.number / 8) >> (column.number % 8) & 1) != 0;
}

std::optional<ByteView> Row::BytesOf(const Column& column) const
{
    if (!MaskBit(column))
        return std::nullopt;
    if (column.fixed)
        return stored_.bytes.Slice(FixedStart() + column.fixedOffset, column.length);
    if (column.variableIndex >= variableCount_)
        return std::nullopt;
    const std::size_t begin = VariableOffset(column.variableIndex);
    const std::size_t end = VariableOffset(column.variableIndex + std::size_t{1});
    if (begin > end || end > offsetsEnd_)
        throw Damage("the columns of a row overlap");
    return stored_.bytes.Slice(begin, end - begin);
}

std::size_t Row::VariableOffset(std::size_t index) const
{
    if (format_ == Format::kJet4)
        return stored_.bytes.U16(Before(offsetsEnd_, 2 * (index + 1)));
    std::size_t offset = stored_.bytes.U8(Before(offsetsEnd_, index + 1));
    for (std::size_t jump = 0; jump < jumps_.Size(); ++jump)
        if (index >= jumps_.U8(jumps_.Size() - 1 - jump))
            offset += kJumpLength;
    return offset;
}

}  // namespace platform::jet
