#include "platform/jet/row.h"

#include <utility>

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
