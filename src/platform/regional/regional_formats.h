#pragma once

#include <QLocale>
#include <QString>

#include "platform/regional_formats.h"

namespace platform::regional {

/// The formats of a locale, repaired where they cannot serve: no time zone, a four-digit year, no blanks or
/// direction marks in the date. A format whose texts code page 1252 lacks, or that does not read back, gives
/// way to yyyy-MM-dd or HH:mm:ss; numbers whose sign or digits it lacks are those of the C locale.
class RegionalFormats final : public platform::RegionalFormats {
public:
    explicit RegionalFormats(const QLocale& locale);

    [[nodiscard]] std::string LongTime(DateTime moment) const override;
    [[nodiscard]] std::string ShortDate(DateTime moment) const override;
    [[nodiscard]] std::string DecimalSign() const override;
    [[nodiscard]] std::optional<double> Number(std::string_view text) const override;

    /// Dates are read in the locale's order of day and month, or as yyyy-MM-dd; times in the locale's long
    /// format, or with colons, in 24 hours or with AM or PM.
    [[nodiscard]] std::optional<DateTime> DateOrTime(std::string_view text) const override;

private:
    /// How a date or a time is written: by which locale, in which of its formats.
    struct Format {
        QLocale locale;
        QString pattern;
    };

    [[nodiscard]] bool DateFormatServes() const;
    [[nodiscard]] bool TimeFormatServes() const;
    [[nodiscard]] QDate Date(const QString& text) const;
    [[nodiscard]] QTime Time(const QString& text) const;

    Format date_;
    Format time_;
    QLocale typed_;    ///< What the operator's keyboard has: perhaps other digits than those written.
    QLocale numbers_;  ///< How numbers are written.
};

}  // namespace platform::regional
