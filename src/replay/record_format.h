#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/regional_formats.h"
#include "platform/value.h"

namespace trellivan {

/// One byte for each character of the text, its code in code page 1252.
/// Failure: kSubscriptOutOfRange for an empty text, kOverflow for a character that the code page lacks.
[[nodiscard]] std::vector<std::uint8_t> StringToBytes(const std::string& text);

/// The text of a record that carries its recorded time: the record, the character 0x01, the time, the
/// character 0x02. A time that is null is an empty text. Failure: as ToText for any other value without a
/// text.
[[nodiscard]] std::string WithRecordedTime(const std::string& recordText, const platform::Value& recordedTime,
                                           const platform::RegionalFormats& formats);

/// A value in the long time format: the time of a date-time, of a text that reads as a date or time, and of a
/// number of days; any other text unchanged. Failure: as ToText for a value without a text, kOverflow for a
/// number of days that is no date.
[[nodiscard]] std::string LongTimeText(const platform::Value& value,
                                       const platform::RegionalFormats& formats);

}  // namespace trellivan
