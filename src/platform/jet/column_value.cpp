#include "platform/jet/column_value.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "platform/jet/text.h"

/// Values of fixed length
///
///   TYPE       SIZE   STORED AS
///   boolean    0      a bit of the row's null mask
///   byte       1      0 to 255
///   integer    2      signed
///   long       4      signed
///   currency   8      signed, in ten-thousandths
///   single     4
///   double     8
///   date       8      double, days since 30 December 1899; the fraction counts forward, also before that day
///   GUID       16     numbers of 4, 2 and 2 bytes, then 8 bytes in their order
///   decimal    17     sign (0: positive), four numbers of 4 bytes, the most significant one first; how many
///                     decimal places these have is the column's
namespace platform::jet {
namespace {

constexpr std::size_t kCurrencyScale = 4;

/// An unsigned whole number of 128 bits, most significant part first.
using Magnitude = std::array<std::uint32_t, 4>;

/// Divides in place and returns the remainder.
std::uint32_t DivideByTen(Magnitude& magnitude)
{
    std::uint64_t remainder = 0;
    for (std::uint32_t& part : magnitude) {
        const std::uint64_t dividend = remainder << 32 | part;
        part = static_cast<std::uint32_t>(dividend / 10);
        remainder = dividend % 10;
    }
    return static_cast<std::uint32_t>(remainder);
}

std::string Digits(Magnitude magnitude)
{
    std::string digits;
    while (magnitude != Magnitude{})
        digits.push_back(static_cast<char>('0' + DivideByTen(magnitude)));
    std::ranges::reverse(digits);
    return digits;
}

/// The number sign x magnitude / 10^scale.
ExactNumber ToExactNumber(bool negative, Magnitude magnitude, std::size_t scale)
{
    std::string digits = Digits(magnitude);
    if (digits.empty())
        return {"0"};
    if (digits.size() <= scale)
        digits.insert(0, scale + 1 - digits.size(), '0');
    if (scale > 0) {
        digits.insert(digits.size() - scale, 1, '.');
        digits.erase(digits.find_last_not_of('0') + 1);
        if (digits.back() == '.')
            digits.pop_back();
    }
    return {negative ? "-" + digits : digits};
}

Binary ToBinary(ByteView bytes)
{
    return {{bytes.Bytes().begin(), bytes.Bytes().end()}};
}

ExactNumber ReadCurrency(ByteView bytes)
{
    const std::int64_t number = bytes.I64(0);
    const std::uint64_t magnitude = number < 0 ? 0 - bytes.U64(0) : bytes.U64(0);
    return ToExactNumber(
        number < 0,
        {0, 0, static_cast<std::uint32_t>(magnitude >> 32), static_cast<std::uint32_t>(magnitude)},
        kCurrencyScale);
}

ExactNumber ReadDecimal(ByteView bytes, std::size_t scale)
{
    return ToExactNumber(bytes.U8(0) != 0, {bytes.U32(1), bytes.U32(5), bytes.U32(9), bytes.U32(13)}, scale);
}

void AppendHex(std::string& text, std::uint64_t number, int digits)
{
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text.push_back("0123456789ABCDEF"[number >> shift & 0xF]);
}

Guid ReadGuid(ByteView bytes)
{
    std::string text = "{";
    AppendHex(text, bytes.U32(0), 8);
    for (const std::size_t group : {4U, 6U}) {
        text += '-';
        AppendHex(text, bytes.U16(group), 4);
    }
    for (std::size_t at = 8; at < 16; ++at) {
        if (at == 8 || at == 10)
            text += '-';
        AppendHex(text, bytes.U8(at), 2);
    }
    return {text + '}'};
}

Value Decode(const PageFile& file, const Column& column, ByteView bytes)
{
    switch (column.type) {
        case ColumnType::kByte:
            return std::int32_t{bytes.U8(0)};
        case ColumnType::kInteger:
            return std::int32_t{bytes.I16(0)};
        case ColumnType::kLong:
            return bytes.I32(0);
        case ColumnType::kCurrency:
            return ReadCurrency(bytes);
        case ColumnType::kSingle:
            return bytes.F32(0);
        case ColumnType::kDouble:
            return bytes.F64(0);
        case ColumnType::kDate:
            return FromDayNumber(bytes.F64(0));
        case ColumnType::kBinary:
            return ToBinary(bytes);
        case ColumnType::kText:
            return DecodeText(bytes, file.FileFormat());
        case ColumnType::kOle:
            return Binary{ReadLongValue(file, bytes)};
        case ColumnType::kMemo:
            return DecodeText(ByteView(ReadLongValue(file, bytes)), file.FileFormat());
        case ColumnType::kGuid:
            return ReadGuid(bytes);
        case ColumnType::kDecimal:
            return ReadDecimal(bytes, column.scale);
        default:
            throw Damage("the column " + column.name + " is of no known type");
    }
}

}  // namespace

Value ReadValue(const PageFile& file, const Row& row, const Column& column)
{
    if (column.type == ColumnType::kBoolean)
        return row.MaskBit(column);
    const std::optional<ByteView> bytes = row.BytesOf(column);
    return bytes ? Decode(file, column, *bytes) : Value{Null{}};
}

}  // namespace platform::jet
