#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace record {

/// One row of a recording. The text is the wire's bytes, in code page 1252.
struct Row {
    std::int32_t ref = 0;
    std::optional<platform::DateTime> timestamp;
    platform::DateTime datetimestamp;
    std::string_view rawtransaction;
};

/// The first line of every recording: the columns in the order in which AppendLine writes them.
inline constexpr std::string_view kColumns = "ref,timestamp,datetimestamp,rawtransaction\n";

/// Appends a row as a line of CSV in UTF-8. The text stands in quotes and keeps every byte: one that has no
/// character in code page 1252 is written as the control character of the same code. `timestamp` is written
/// in whole seconds, as tills write it, `datetimestamp` in milliseconds.
void AppendLine(std::string& csv, const Row& row);

}  // namespace record
