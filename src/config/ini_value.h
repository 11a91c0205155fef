#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "platform/date_time.h"
#include "platform/regional_formats.h"

namespace trellivan {

/// The kinds of value that can be read from a profile file. The numbers appear in error records.
namespace value_kind {
inline constexpr std::int32_t kInteger = 2;
inline constexpr std::int32_t kLong = 3;
inline constexpr std::int32_t kSingle = 4;
inline constexpr std::int32_t kDouble = 5;
inline constexpr std::int32_t kDate = 7;
inline constexpr std::int32_t kText = 8;
inline constexpr std::int32_t kBoolean = 11;
}  // namespace value_kind

/// The buffer length of every read in this program: one more than the characters of the longest value.
inline constexpr std::int32_t kValueLength = 256;

/// A value of kind 2, 3, 4, 5, 7, 8 or 11, in this order.
using IniValue =
    std::variant<std::int16_t, std::int32_t, float, double, platform::DateTime, std::string, bool>;

/// A profile file's text as a value of a kind; nothing where the text does not fit the kind, or the kind is
/// unknown. Whole numbers are rounded, halves to the even neighbour, after a range test of the number as it
/// stands. Failure: kOverflow for a Single beyond its range.
[[nodiscard]] std::optional<IniValue> ConvertIniText(const std::string& text, std::int32_t valueKind,
                                                     const platform::RegionalFormats& formats);

}  // namespace trellivan
