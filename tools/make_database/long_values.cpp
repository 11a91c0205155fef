#include "make_database/long_values.h"

#include <cstdint>

#include "platform/failure.h"

namespace tools {
namespace {

constexpr std::uint32_t kOwner = 0x4C41564C;  // "LVAL" where other data pages name their table
constexpr std::uint32_t kInline = 0x80000000;
constexpr std::uint32_t kOneRow = 0x40000000;
constexpr std::uint32_t kChain = 0;
constexpr std::size_t kLongestValue = 0x3FFFFFFF;
constexpr std::size_t kPointerSize = 4;

}  // namespace

LongValues::LongValues(PageOutput& output, std::size_t inlineLimit)
    : longestRow_(output.FileLayout().longValueRow), inlineLimit_(inlineLimit), rows_(output, kOwner)
{}

Bytes LongValues::Store(const Bytes& value)
{
    if (value.size() > kLongestValue)
        throw platform::Failure(platform::failure::kTypeMismatch, "the text is longer than a memo can be");
    const bool stays = value.size() <= inlineLimit_;
    std::uint32_t kind = kInline;
    std::uint32_t pointer = 0;
    if (!stays && value.size() <= longestRow_) {
        kind = kOneRow;
        pointer = rows_.Add(value).AsNumber();
    } else if (!stays) {
        kind = kChain;
        pointer = StoreChain(value).AsNumber();
    }
    Bytes field;
    Append(field, static_cast<std::uint32_t>(value.size()) | kind);
    Append(field, pointer);
    Append(field, std::uint32_t{0});
    return stays ? field + value : field;
}

RowPointer LongValues::StoreChain(const Bytes& value)
{
    const std::size_t blockSize = longestRow_ - kPointerSize;
    RowPointer next{0, 0};
    // From the last block to the first, so that each knows where the next one stands.
    for (std::size_t block = (value.size() + blockSize - 1) / blockSize; block-- > 0;) {
        Bytes row = NumberBytes(next.AsNumber());
        row.append(value, block * blockSize, blockSize);
        next = rows_.Add(row);
    }
    return next;
}

}  // namespace tools
