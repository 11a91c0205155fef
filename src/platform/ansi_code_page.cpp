#include "platform/ansi_code_page.h"

#include <algorithm>
#include <array>

namespace platform {
namespace {

constexpr std::uint8_t kFirstSpecial = 0x80;
constexpr char32_t kReplacement = 0xFFFD;

/// Characters of the bytes 0x80 to 0x9F, from the code page's published table.
constexpr std::array<char32_t, 32> kSpecials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

struct Sequence {
    std::size_t length;
    char32_t leadBits;
    char32_t smallest;
};

/// What a lead byte announces; a length of 0 for a byte that cannot lead.
Sequence SequenceOf(std::uint8_t lead)
{
    if (lead < 0x80)
        return {1, lead, 0};
    if (lead >= 0xC2 && lead <= 0xDF)
        return {2, static_cast<char32_t>(lead & 0x1F), 0x80};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {3, static_cast<char32_t>(lead & 0x0F), 0x800};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {4, static_cast<char32_t>(lead & 0x07), 0x10000};
    return {0, 0, 0};
}

bool IsScalar(char32_t character)
{
    return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

}  // namespace

std::optional<std::uint8_t> AnsiCode(char32_t character)
{
    if (character < kFirstSpecial || (character >= 0xA0 && character <= 0xFF))
        return static_cast<std::uint8_t>(character);
    const auto* const found = std::ranges::find(kSpecials, character);
    if (found == kSpecials.end())
        return std::nullopt;
    return static_cast<std::uint8_t>(kFirstSpecial + (found - kSpecials.begin()));
}

char32_t AnsiCharacter(std::uint8_t code)
{
    const bool special = code >= kFirstSpecial && code < kFirstSpecial + kSpecials.size();
    return special ? kSpecials[code - kFirstSpecial] : code;
}

std::string ToAnsi(std::string_view utf8)
{
    std::string bytes;
    bytes.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::string_view ascii = LeadingAscii(utf8);
        bytes += ascii;
        utf8.remove_prefix(ascii.size());
        if (!utf8.empty())
            bytes.push_back(static_cast<char>(AnsiCode(TakeCharacter(utf8)).value_or('?')));
    }
    return bytes;
}

std::string_view LeadingAscii(std::string_view bytes)
{
    const auto* const end =
        std::ranges::find_if(bytes, [](char c) { return static_cast<signed char>(c) <= 0; });
    return bytes.substr(0, static_cast<std::size_t>(end - bytes.begin()));
}

std::string FromAnsi(std::string_view bytes)
{
    const std::string_view ascii = LeadingAscii(bytes);
    std::string utf8;
    utf8.reserve(bytes.size());
    utf8 += ascii;
    for (const char byte : bytes.substr(ascii.size()))
        AppendCharacter(utf8, AnsiCharacter(static_cast<std::uint8_t>(byte)));
    return utf8;
}

char32_t TakeCharacter(std::string_view& utf8)
{
    const auto [length, leadBits, smallest] = SequenceOf(static_cast<std::uint8_t>(utf8.front()));
    char32_t character = leadBits;
    bool valid = length > 0 && length <= utf8.size();
    for (std::size_t i = 1; valid && i < length; ++i) {
        const auto byte = static_cast<std::uint8_t>(utf8[i]);
        valid = (byte & 0xC0) == 0x80;
        character = character << 6 | (byte & 0x3F);
    }
    valid = valid && character >= smallest && IsScalar(character);
    utf8.remove_prefix(valid ? length : 1);
    return valid ? character : kReplacement;
}

bool IsUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t size = bytes.size();
        // The replacement character itself takes three bytes.
        if (TakeCharacter(bytes) == kReplacement && size - bytes.size() == 1)
            return false;
    }
    return true;
}

void AppendCharacter(std::string& utf8, char32_t character)
{
    const auto append = [&](char32_t bits) { utf8.push_back(static_cast<char>(bits)); };
    if (!IsScalar(character))
        character = kReplacement;
    if (character < 0x80) {
        append(character);
        return;
    }
    if (character < 0x800) {
        append(0xC0 | character >> 6);
    } else {
        if (character < 0x10000) {
            append(0xE0 | character >> 12);
        } else {
            append(0xF0 | character >> 18);
            append(0x80 | (character >> 12 & 0x3F));
        }
        append(0x80 | (character >> 6 & 0x3F));
    }
    append(0x80 | (character & 0x3F));
}

}  // namespace platform
