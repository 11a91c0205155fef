#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "platform/date_time.h"

namespace platform {

class RegionalFormats;

/// No value: the column of this row is null.
struct Null {
    bool operator==(const Null&) const = default;
};

/// A Currency or Decimal value, exactly: its decimal digits with "-" in front where negative and "." before
/// the fraction, without trailing zeros ("0", "-12.5"; never "-0").
struct ExactNumber {
    std::string digits;
    bool operator==(const ExactNumber&) const = default;
};

/// A GUID in its usual form: braces and upper-case hexadecimal digits.
struct Guid {
    std::string text;
    bool operator==(const Guid&) const = default;
};

/// Bytes that are no text: binary and OLE columns.
struct Binary {
    std::vector<std::uint8_t> bytes;
    bool operator==(const Binary&) const = default;
};

/// The value of one column in one row, as the database engine delivers it. Texts are UTF-8.
using Value =
    std::variant<Null, bool, std::int32_t, float, double, ExactNumber, DateTime, Guid, std::string, Binary>;

/// A value as text: whole numbers plain, Single with up to 7 digits and Double with up to 15, the regional
/// decimal sign and no grouping, True or False, dates as GeneralDate writes them. Failure: kInvalidUseOfNull for
/// null, kTypeMismatch for binary.
[[nodiscard]] std::string ToText(const Value& value, const RegionalFormats& formats);

}  // namespace platform
