#pragma once

#include <QDate>
#include <QLocale>
#include <QString>
#include <QTime>

/// How a region writes and reads days and times of day.
///
/// A pattern is Qt's: h, m, s, d, M and y stand for their part of the date or time, AP for the name of the half day, t for
/// the time zone, and 'text in quotes' for itself. What a locale has is repaired where it cannot serve. Where it cannot
/// be repaired, because code page 1252 lacks its characters or because it does not read back, a plain pattern is used.
namespace platform::regional {

/// The locale's short date with a year of four digits, without blanks and direction marks, or else yyyy-MM-dd.
class DateFormat {
public:
    explicit DateFormat(const QLocale& locale);

    [[nodiscard]] QString Write(QDate date) const { return locale_.toString(date, pattern_); }

    /// Reads a date in the region's order of day and month, which holds also where its own pattern does not serve, or as
    /// yyyy-MM-dd. A null date for anything else.
    [[nodiscard]] QDate Read(const QString& text) const;

private:
    QLocale locale_;
    QString pattern_;
    bool isDayFirst_;
};

/// The locale's long time without its zone, the half day in the region's own letters ("p. m."), or else HH:mm:ss.
class TimeFormat {
public:
    explicit TimeFormat(const QLocale& locale);

    [[nodiscard]] QString Write(QTime time) const { return locale_.toString(time, pattern_); }

    /// Reads a time as it is written, or with colons, in 24 hours or with AM or PM. A null time for anything else.
    [[nodiscard]] QTime Read(const QString& text) const;

private:
    QLocale locale_;
    QString pattern_;
};

/// Whether code page 1252 holds the text.
[[nodiscard]] bool InAnsiCodePage(const QString& text);

}  // namespace platform::regional
