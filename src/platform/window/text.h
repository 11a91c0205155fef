#pragma once

#include <QString>
#include <string>
#include <string_view>

#include "platform/regional/qt_values.h"

namespace platform::window {

using regional::FromQt;
using regional::ToQt;

/// Takes the first character off a UTF-8 text that is not empty, and returns what makes it visible on one
/// line: an arrow for a tab or a line break (CR LF is one), a dot for another control or formatting character.
[[nodiscard]] char32_t TakeVisible(std::string_view& utf8);

/// The first characters of a text, each of them visible on one line. Costs no more than what it returns.
[[nodiscard]] QString VisibleText(std::string_view utf8, std::size_t mostCharacters);

/// Bytes of a text that hold its first characters whole.
[[nodiscard]] constexpr std::size_t BytesOfCharacters(std::size_t characters)
{
    constexpr std::size_t kLongestCharacter = 4;
    return characters * kLongestCharacter;
}

}  // namespace platform::window
