#pragma once

#include <QLocale>
#include <QString>

/// What a locale's own patterns of date and time look like when they are repaired.
///
/// A pattern is Qt's: h, m, s, d, M and y stand for their part of the date or time, AP for the region's name of the
/// half day, t for the time zone, and 'text in quotes' for itself.
namespace platform::regional {

/// The long time without its zone, the half day in the region's own letters ("p. m."). Empty where the region has in its
/// time what Qt does not know: Qt would write the letter of the pattern instead, such as the "B" of "Bh:mm:ss" that
/// stands for the part of the day in Taiwan.
[[nodiscard]] QString TimePattern(const QLocale& locale);

/// The short date with a year of four digits, without blanks and direction marks.
[[nodiscard]] QString DatePattern(const QLocale& locale);

/// Whether the region names the day before the month.
[[nodiscard]] bool IsDayFirst(const QLocale& locale);

}  // namespace platform::regional
