#include "platform/jet/sort_key.h"

#include <algorithm>
#include <bit>

#include "platform/jet/column_value.h"
#include "platform/jet/text_sort_key.h"

namespace platform::jet {
namespace {

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
constexpr std::size_t kBytesThatCount = 510;
constexpr std::size_t kDecimalSize = 17;

std::uint64_t FromInteger(std::int64_t number)
{
    return std::bit_cast<std::uint64_t>(number) ^ kSignBit;
}

std::uint64_t FromDouble(double number)
{
    const auto bits = std::bit_cast<std::uint64_t>(number == 0 ? 0.0 : number);
    return (bits & kSignBit) != 0 ? ~bits : bits | kSignBit;
}

std::uint64_t FromBytes(ColumnType type, ByteView bytes)
{
    switch (type) {
        case ColumnType::kByte:
            return bytes.U8(0);
        case ColumnType::kInteger:
            return FromInteger(bytes.I16(0));
        case ColumnType::kLong:
            return FromInteger(bytes.I32(0));
        case ColumnType::kCurrency:
            return FromInteger(bytes.I64(0));
        case ColumnType::kSingle:
            return FromDouble(bytes.F32(0));
        default:
            return FromDouble(bytes.F64(0));
    }
}

/// Sign, then the magnitude with its most significant byte first, all bits turned over for a negative one.
std::string DecimalKey(ByteView bytes)
{
    std::string magnitude;
    for (std::size_t part = 1; part < kDecimalSize; part += 4)
        for (std::size_t i = 4; i-- > 0;)
            magnitude.push_back(static_cast<char>(bytes.U8(part + i)));
    const bool isZero = magnitude.find_first_not_of('\0') == std::string::npos;
    if (bytes.U8(0) == 0 || isZero)
        return '\1' + magnitude;
    std::ranges::transform(magnitude, magnitude.begin(), [](char byte) { return static_cast<char>(~byte); });
    return '\0' + magnitude;
}

struct KeyOfValue {
    std::optional<std::string> operator()(const std::string& text) const
    {
        return TextSortKey(std::string_view(text).substr(0, kBytesThatCount));
    }
    std::optional<std::string> operator()(const Guid& guid) const { return guid.text; }
    std::optional<std::string> operator()(const Binary& binary) const
    {
        const std::size_t length = std::min(binary.bytes.size(), kBytesThatCount);
        return std::string(ByteView(binary.bytes).Slice(0, length).AsText());
    }
    std::optional<std::string> operator()(const auto&) const { return std::nullopt; }
};

}  // namespace

bool IsOrderedByNumber(ColumnType type)
{
    return type >= ColumnType::kBoolean && type <= ColumnType::kDate;
}

std::optional<std::uint64_t> NumberSortKey(const Row& row, const Column& column)
{
    if (column.type == ColumnType::kBoolean)
        return row.MaskBit(column) ? 0 : 1;
    const std::optional<ByteView> bytes = row.BytesOf(column);
    return bytes ? std::optional(FromBytes(column.type, *bytes)) : std::nullopt;
}

std::optional<std::string> ByteSortKey(const PageFile& file, const Row& row, const Column& column)
{
    if (column.type != ColumnType::kDecimal)
        return std::visit(KeyOfValue{}, ReadValue(file, row, column));
    const std::optional<ByteView> bytes = row.BytesOf(column);
    return bytes ? std::optional(DecimalKey(*bytes)) : std::nullopt;
}

}  // namespace platform::jet
