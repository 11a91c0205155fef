#include "platform/jet/long_value.h"

#include <algorithm>
#include <set>

#include "platform/jet/data_page.h"

namespace platform::jet {
namespace {

constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
constexpr std::uint32_t kInlineFlag = 0x80000000;
constexpr std::uint32_t kOneRowFlag = 0x40000000;
constexpr std::size_t kPointer = 4;
constexpr std::size_t kReferenceSize = 12;
constexpr std::size_t kNextBlockSize = 4;

/// Gathers a value piece by piece, never more than its stated length.
class Pieces {
public:
    explicit Pieces(std::size_t length) : length_(length) {}

    void Add(ByteView piece)
    {
        const auto bytes = piece.Bytes().first(std::min(piece.Size(), length_ - bytes_.size()));
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    }

    [[nodiscard]] bool Complete() const { return bytes_.size() == length_; }

    [[nodiscard]] std::vector<std::uint8_t> Take()
    {
        if (!Complete())
            throw Damage("a long value ends before its stated length");
        return std::move(bytes_);
    }

private:
    std::size_t length_;
    std::vector<std::uint8_t> bytes_;
};

void AddChain(const PageFile& file, RowPosition block, Pieces& pieces)
{
    std::set<RowPosition> visited;
    while (!pieces.Complete() && block != RowPosition{}) {
        if (!visited.insert(block).second)
            throw Damage("the blocks of a long value go in a circle");
        const StoredRow row = FetchRow(file, block, kLongValueOwner);
        const ByteView data = row.bytes.From(kNextBlockSize);
        if (data.Size() == 0)
            throw Damage("a block of a long value is empty");
        pieces.Add(data);
        block = {row.bytes.U32(0)};
    }
}

}  // namespace

std::vector<std::uint8_t> ReadLongValue(const PageFile& file, ByteView reference)
{
    if (reference.Size() == 0)
        return {};
    const std::uint32_t field = reference.U32(0);
    Pieces pieces(field & kLengthMask);
    const RowPosition position{reference.U32(kPointer)};
    if ((field & kInlineFlag) != 0)
        pieces.Add(reference.From(kReferenceSize));
    else if ((field & kOneRowFlag) != 0)
        pieces.Add(FetchRow(file, position, kLongValueOwner).bytes);
    else
        AddChain(file, position, pieces);
    return pieces.Take();
}

}  // namespace platform::jet
