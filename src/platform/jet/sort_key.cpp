#include "platform/jet/sorting.h"

#include <algorithm>
#include <bit>

#include "platform/jet/column_value.h"
#include "platform/jet/text.h"

namespace platform::jet {
namespace {

constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63;
constexpr std::size_t kMemoCharactersThatCount = 255;
constexpr std::size_t kMemoBytesThatCount = 1024;  // hold as many characters, compressed or not
constexpr std::size_t kOleBytesThatCount = 510;
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

std::string TextKey(const PageFile& file, std::string_view text)
{
    return TextSortKey(text, file.FileFormat());
}

std::string MemoKey(const PageFile& file, ByteView reference)
{
    const auto bytes = ReadLongValueBeginning(file, reference, kMemoBytesThatCount);
    return TextKey(file, DecodeTextBeginning(ByteView(bytes), file.FileFormat(), kMemoCharactersThatCount));
}

std::string OleKey(const PageFile& file, ByteView reference)
{
    return std::string(ByteView(ReadLongValueBeginning(file, reference, kOleBytesThatCount)).AsText());
}

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

std::string ByteSortKey(const PageFile& file, const Row& row, const Column& column)
{
    const std::optional<ByteView> bytes = row.BytesOf(column);
    if (!bytes)
        return {};
    switch (column.type) {
        case ColumnType::kText:
            return TextKey(file, DecodeText(*bytes, file.FileFormat()));
        case ColumnType::kMemo:
            return MemoKey(file, *bytes);
        case ColumnType::kOle:
            return OleKey(file, *bytes);
        case ColumnType::kBinary:
            return std::string(bytes->AsText());
        case ColumnType::kDecimal:
            return DecimalKey(*bytes);
        default:
            return std::get<Guid>(ReadValue(file, row, column)).text;
    }
}

}  // namespace platform::jet
