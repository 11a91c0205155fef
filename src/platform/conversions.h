#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/regional_formats.h"

namespace platform {

/// A number rounded to a whole one, halves to the even neighbour: 2.5 gives 2, 3.5 gives 4.
[[nodiscard]] inline double RoundHalfToEven(double number)
{
    return std::nearbyint(number);
}

/// The Failure (kOverflow) of a number that lies outside a range. `what` says in the description whose number it is.
[[nodiscard]] Failure Overflow(std::string_view what, double number, double lowest, double highest);

/// A number rounded, halves to the even neighbour, into a whole-number type. Failure: kOverflow where the
/// rounded number does not fit.
template <class Integer>
[[nodiscard]] Integer ToInteger(double number, std::string_view what = "the number")
{
    constexpr double kLowest = std::numeric_limits<Integer>::min();
    constexpr double kHighest = std::numeric_limits<Integer>::max();
    const double whole = RoundHalfToEven(number);
    if (!(whole >= kLowest && whole <= kHighest))
        throw Overflow(what, number, kLowest, kHighest);
    return static_cast<Integer>(whole);
}

/// A count plus one. Failure: kOverflow past the type's last number.
[[nodiscard]] inline std::int32_t Successor(std::int32_t count)
{
    return ToInteger<std::int32_t>(count + 1.0);
}

/// The number that a text stands for. `what` says in the description whose number it is. Failure: kTypeMismatch where the
/// text is none.
[[nodiscard]] double ToNumber(std::string_view text, const RegionalFormats& formats, std::string_view what);

/// The 32-bit whole number that the text of a port stands for. Every port goes through this function, so that "1.5" means
/// the same port everywhere. Failure: kTypeMismatch, kOverflow.
[[nodiscard]] std::int32_t ToLong(std::string_view text, const RegionalFormats& formats);

/// A text with its ASCII letters in upper or lower case. The words that the program compares have no others.
[[nodiscard]] std::string UpperCase(std::string_view text);
[[nodiscard]] std::string LowerCase(std::string_view text);

/// Whether two names (UTF-8) of tables, columns, sections or keys are the same. The case of ASCII letters does not count.
[[nodiscard]] inline bool SameName(std::string_view one, std::string_view other)
{
    const auto folded = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(one, other, {}, folded, folded);
}

}  // namespace platform
