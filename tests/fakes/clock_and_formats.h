#pragma once

#include "platform/date_time.h"
#include "platform/regional_formats.h"

namespace platform::fakes {

/// A clock that stands until it is moved.
class Clock : public platform::Clock {
public:
    [[nodiscard]] DateTime Now() const override { return now; }

    DateTime now{};
};

/// Formats without a region: "2021-05-14", "15:07:09", "." as the decimal sign, no digit groups.
class PlainFormats : public RegionalFormats {
public:
    [[nodiscard]] std::string LongTime(DateTime moment) const override;
    [[nodiscard]] std::string ShortDate(DateTime moment) const override;
    [[nodiscard]] std::string DecimalSign() const override { return "."; }
    [[nodiscard]] std::optional<double> Number(std::string_view text) const override;
    [[nodiscard]] std::optional<DateTime> DateOrTime(std::string_view text) const override;
};

}  // namespace platform::fakes
