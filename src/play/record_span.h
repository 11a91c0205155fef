#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/database.h"
#include "platform/regional_formats.h"

namespace player {

/// Which records are wanted, by their `ref`: from the first that is not less than one value to the last that is not
/// greater than another. Where `ref` is a text: from and to the one that is equal.
struct RefRange {
    std::optional<std::string> from{};
    std::optional<std::string> to{};
};

/// Records that follow each other, counted from 0.
struct RecordSpan {
    std::int64_t first = 0;
    std::int64_t count = 0;
};

/// Finds the records of a range; the cursor ends anywhere. Failure: UsageError where there are none, or where a bound
/// cannot be compared with `ref`; as Field for a record that cannot be read.
[[nodiscard]] RecordSpan FindSpan(platform::RecordSet& records, const RefRange& range,
                                  const platform::RegionalFormats& formats);

}  // namespace player
