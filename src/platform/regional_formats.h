#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date_time.h"

namespace platform {

/// The user's regional date, time and number formats. One set of them serves status lines, boxes, the wire
/// and the error log. Texts are UTF-8. No call fails.
class RegionalFormats {
public:
    virtual ~RegionalFormats() = default;

    /// Hours, minutes and whole seconds, with the format's own separators and AM/PM marker: "15:07:09",
    /// "3:07:09 PM". Never a time zone.
    [[nodiscard]] virtual std::string LongTime(DateTime moment) const = 0;

    /// The day with a four-digit year and no blank or direction mark inside. Every text it returns can be
    /// written in code page 1252, and DateOrTime reads it back as the same day.
    [[nodiscard]] virtual std::string ShortDate(DateTime moment) const = 0;

    /// "." or "," and the like.
    [[nodiscard]] virtual std::string DecimalSign() const = 0;

    /// The number that the whole text stands for: blanks around it, a sign, a decimal sign, digit groups and
    /// an exponent are allowed. Nothing for an empty text, letters, infinities and hexadecimal forms.
    [[nodiscard]] virtual std::optional<double> Number(std::string_view text) const = 0;

    /// The date, time, or date and time that the whole text stands for: midnight where it has no time, day 0
    /// where it has no date.
    [[nodiscard]] virtual std::optional<DateTime> DateOrTime(std::string_view text) const = 0;
};

/// A date-time as text without a format: short date, blank, long time; the date alone at midnight; the time
/// alone on day 0.
[[nodiscard]] std::string GeneralDate(DateTime moment, const RegionalFormats& formats);

}  // namespace platform
