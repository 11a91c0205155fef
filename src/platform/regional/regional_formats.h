#pragma once

#include <QLocale>
#include <optional>
#include <string>

#include "platform/regional/date_and_time.h"
#include "platform/regional_formats.h"

namespace platform::regional {

/// The formats of a locale, each of which gives way to a plain one where it cannot serve. A number whose decimal sign or
/// digits code page 1252 lacks is written as in the C locale.
class RegionalFormats final : public platform::RegionalFormats {
public:
    explicit RegionalFormats(const QLocale& locale);

    [[nodiscard]] std::string LongTime(DateTime moment) const override;
    [[nodiscard]] std::string ShortDate(DateTime moment) const override;
    [[nodiscard]] std::string DecimalSign() const override;
    [[nodiscard]] std::optional<double> Number(std::string_view text) const override;

    [[nodiscard]] std::optional<DateTime> DateOrTime(std::string_view text) const override;

private:
    DateFormat date_;
    TimeFormat time_;
    QLocale typed_;    ///< How the operator types numbers: perhaps with other digits than those written.
    QLocale numbers_;  ///< How numbers are written.
};

/// The locale of a name like "de_DE", "C" or "POSIX"; nothing where the name is not known.
[[nodiscard]] std::optional<QLocale> LocaleNamed(const std::string& name);

}  // namespace platform::regional
