#include "platform/jet/column_value.h"

#include <algorithm>
#include <limits>
#include <set>

#include "platform/jet/data_page.h"

/// Long value: a memo or an OLE value
///
/// The row has this in the column's place:
///
///   OFFSET   SIZE   DESCRIPTION
///   0        4      length in 30 bits, and how the value is stored
///                     0x80000000  here, behind these 12 bytes; it may be long all the same
///                     0x40000000  in one row of a page of long values
///                     neither     in blocks, each of which is such a row
///   4        4      row (1 byte) and page (3 bytes) of the row or of the first block
///   8        4      not read
///
///   Block: OFFSET   SIZE   DESCRIPTION
///   0               4      row and page of the next block; 0: none
///   4               n      bytes of the value, at least one
namespace platform::jet {
namespace {

constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
constexpr std::uint32_t kInlineFlag = 0x80000000;
constexpr std::uint32_t kOneRowFlag = 0x40000000;
constexpr std::size_t kPointer = 4;
constexpr std::size_t kReferenceSize = 12;
constexpr std::size_t kNextBlockSize = 4;
constexpr std::size_t kMostBlocksOfBeginning = 16;

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

    [[nodiscard]] std::vector<std::uint8_t> Release() { return std::move(bytes_); }

private:
    std::size_t length_;
    std::vector<std::uint8_t> bytes_;
};

void AddChain(const PageFile& file, RowPosition block, std::size_t mostBlocks, Pieces& pieces)
{
    std::set<RowPosition> visited;
    while (!pieces.Complete() && block != RowPosition{} && visited.size() < mostBlocks) {
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

void AddPieces(const PageFile& file, ByteView reference, std::size_t mostBlocks, Pieces& pieces)
{
    const std::uint32_t field = reference.U32(0);
    const RowPosition position{reference.U32(kPointer)};
    if ((field & kInlineFlag) != 0)
        pieces.Add(reference.From(kReferenceSize));
    else if ((field & kOneRowFlag) != 0)
        pieces.Add(FetchRow(file, position, kLongValueOwner).bytes);
    else
        AddChain(file, position, mostBlocks, pieces);
}

std::size_t StatedLength(ByteView reference)
{
    return reference.U32(0) & kLengthMask;
}

}  // namespace

std::vector<std::uint8_t> ReadLongValue(const PageFile& file, ByteView reference)
{
    if (reference.Size() == 0)
        return {};
    Pieces pieces(StatedLength(reference));
    AddPieces(file, reference, std::numeric_limits<std::size_t>::max(), pieces);
    if (!pieces.Complete())
        throw Damage("a long value ends before its stated length");
    return pieces.Release();
}

std::vector<std::uint8_t> ReadLongValueBeginning(const PageFile& file, ByteView reference,
                                                 std::size_t mostBytes)
{
    if (reference.Size() == 0)
        return {};
    Pieces pieces(std::min(StatedLength(reference), mostBytes));
    AddPieces(file, reference, kMostBlocksOfBeginning, pieces);
    return pieces.Release();
}

}  // namespace platform::jet
