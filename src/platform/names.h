#pragma once

#include <algorithm>
#include <string_view>

namespace platform {

/// True for names (UTF-8) that are one without regard to the case of ASCII letters: of tables, columns, sections
/// and keys.
[[nodiscard]] inline bool SameName(std::string_view one, std::string_view other)
{
    const auto folded = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(one, other, {}, folded, folded);
}

}  // namespace platform
