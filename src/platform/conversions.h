#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "platform/failure_numbers.h"
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

/// A count and one more. Failure: kOverflow past the type's last number.
[[nodiscard]] inline std::int32_t Successor(std::int32_t count)
{
    return ToInteger<std::int32_t>(count + 1.0);
}

/// The number that a text stands for. Failure: kTypeMismatch where it is none.
[[nodiscard]] double ToNumber(std::string_view text, const RegionalFormats& formats);

/// The 32-bit whole number that a text stands for: the one rule by which a port typed as text becomes a port.
/// Failure: kTypeMismatch, kOverflow.
[[nodiscard]] std::int32_t ToLong(std::string_view text, const RegionalFormats& formats);

/// A text with its ASCII letters in upper or lower case: enough to compare with the program's own words.
[[nodiscard]] std::string UpperCase(std::string_view text);
[[nodiscard]] std::string LowerCase(std::string_view text);

}  // namespace platform
