#pragma once

#include <QLocale>
#include <QString>

#include "platform/regional_formats.h"

namespace platform::regional {

/// The formats of a locale, with its patterns repaired. A date or time that code page 1252 cannot hold, or that does not
/// read back, is written as yyyy-MM-dd or HH:mm:ss instead, and a number whose decimal sign or digits the code page
/// lacks as in the C locale.
class RegionalFormats final : public platform::RegionalFormats {
public:
    explicit RegionalFormats(const QLocale& locale);

    [[nodiscard]] std::string LongTime(DateTime moment) const override;
    [[nodiscard]] std::string ShortDate(DateTime moment) const override;
    [[nodiscard]] std::string DecimalSign() const override;
    [[nodiscard]] std::optional<double> Number(std::string_view text) const override;

    /// Dates are read in the region's order of day and month, or as yyyy-MM-dd; times as they are written, or with
    /// colons, in 24 hours or with AM or PM.
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
    bool isDayFirst_;  ///< The region's order, also where its own date does not serve.
    QLocale typed_;    ///< What the operator's keyboard has: perhaps other digits than those written.
    QLocale numbers_;  ///< How numbers are written.
};

}  // namespace platform::regional
