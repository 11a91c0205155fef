#include "make_database/text_encoding.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/ansi_code_page.h"
#include "platform/failure.h"

namespace tools {
namespace {

constexpr std::string_view kCompressedMark = "\xFF\xFE";

[[noreturn]] void FailText(const std::string& what)
{
    throw platform::Failure(platform::failure::kTypeMismatch, what);
}

Bytes EncodeAnsi(std::string_view utf8)
{
    Bytes bytes;
    while (!utf8.empty()) {
        const auto code = platform::AnsiCode(platform::TakeCharacter(utf8));
        if (!code)
            FailText("the text has a character that code page 1252 lacks");
        Append(bytes, *code);
    }
    return bytes;
}

/// Two bytes a unit, the low one first.
Bytes EncodeUtf16(std::string_view utf8)
{
    Bytes bytes;
    while (!utf8.empty()) {
        const char32_t character = platform::TakeCharacter(utf8);
        if (character < 0x10000) {
            Append(bytes, static_cast<std::uint16_t>(character));
        } else {
            const char32_t above = character - 0x10000;
            Append(bytes, static_cast<std::uint16_t>(0xD800 | above >> 10));
            Append(bytes, static_cast<std::uint16_t>(0xDC00 | (above & 0x3FF)));
        }
    }
    return bytes;
}

/// Nothing where the text has a unit whose low byte is 0, which would read as the switch between one and two
/// bytes a character.
std::optional<Bytes> Compressed(const Bytes& utf16)
{
    Bytes bytes(kCompressedMark);
    bool wide = false;
    for (std::size_t i = 0; i < utf16.size(); i += 2) {
        if (utf16[i] == 0)
            return std::nullopt;
        if (const bool needsTwo = utf16[i + 1] != 0; needsTwo != wide) {
            bytes.push_back(0);
            wide = needsTwo;
        }
        bytes.append(utf16, i, wide ? 2 : 1);
    }
    return bytes;
}

}  // namespace

Bytes EncodeText(std::string_view utf8, Format format, bool compress)
{
    if (format == Format::kJet3)
        return EncodeAnsi(utf8);
    Bytes plain = EncodeUtf16(utf8);
    const bool looksCompressed = plain.starts_with(kCompressedMark);
    if (!compress && !looksCompressed)
        return plain;
    auto compressed = Compressed(plain);
    if (looksCompressed && !compressed)
        FailText("the text begins with U+FEFF and cannot be stored");
    if (compressed && (looksCompressed || compressed->size() < plain.size()))
        return *std::move(compressed);
    return plain;
}

}  // namespace tools
