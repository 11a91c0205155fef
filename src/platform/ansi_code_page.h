#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Text in the program is UTF-8; on the wire, in the error log, in the settings file and in old database
/// files it is one byte a character in code page 1252. This is the one table between the two.
///
/// Five bytes (0x81, 0x8D, 0x8F, 0x90, 0x9D) have no character in 1252; they stand for the control characters
/// of the same code, so that every byte has a character.

/// The byte of a character, or nothing where code page 1252 lacks it.
[[nodiscard]] std::optional<std::uint8_t> AnsiCode(char32_t character);

/// The character of a byte.
[[nodiscard]] char32_t AnsiCharacter(std::uint8_t code);

/// UTF-8 as bytes of code page 1252, "?" for each character that it lacks.
[[nodiscard]] std::string ToAnsi(std::string_view utf8);

/// The longest beginning that is ASCII without U+0000: the same bytes in code page 1252 and in UTF-8, which can
/// be copied as they are. U+0000 ends it because a compressed text of Jet 4 changes its form there.
[[nodiscard]] std::string_view LeadingAscii(std::string_view bytes);

/// Bytes of code page 1252 as UTF-8.
[[nodiscard]] std::string FromAnsi(std::string_view bytes);

/// Takes the first character off a UTF-8 text that is not empty. A byte that is no valid UTF-8 counts as one
/// character U+FFFD.
[[nodiscard]] char32_t TakeCharacter(std::string_view& utf8);

/// True for valid UTF-8.
[[nodiscard]] bool IsUtf8(std::string_view bytes);

/// Appends a character to a UTF-8 text.
void AppendCharacter(std::string& utf8, char32_t character);

}  // namespace platform
