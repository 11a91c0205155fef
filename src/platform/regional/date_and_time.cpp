#include "platform/regional/date_and_time.h"

#include <QRegularExpression>
#include <algorithm>

#include "platform/ansi_code_page.h"
#include "platform/regional/qt_values.h"

namespace platform::regional {
namespace {

QString RepairedDatePattern(QString pattern)
{
    static const QRegularExpression shortYear(QStringLiteral("(?<!y)yy(?!y)"));
    static const QRegularExpression blanksAndMarks(QStringLiteral("[\\s\\x{A0}\\p{Cf}]"));
    return pattern.replace(shortYear, QStringLiteral("yyyy")).remove(blanksAndMarks);
}

QString RepairedTimePattern(QString pattern)
{
    // The zone stands as " t", "t ", " (t)", ", t" or "[t]".
    static const QRegularExpression zone(QStringLiteral("[ ,]*[(\\[]?\\bt\\b[)\\]]?\\s*"));
    pattern.replace(QChar(0x202F), QLatin1Char(' ')).remove(zone);
    // AP gives capitals, Ap the letters that the region itself uses.
    return pattern.replace(QLatin1String("AP"), QLatin1String("Ap")).trimmed();
}

/// Qt writes a letter that it does not know as it stands: in Taiwan the "B" of "Bh:mm:ss", which means the part of the
/// day.
bool IsKnownToQt(QString timePattern)
{
    static const QRegularExpression quoted(QStringLiteral("'[^']*'"));
    static const QRegularExpression unknownLetter(QStringLiteral("(?![HhmsAaPp])[A-Za-z]"));
    return !timePattern.remove(quoted).contains(unknownLetter);
}

/// Whether each sample can be written and reads back.
template <class Format, class Samples>
bool Serves(const Format& format, const Samples& samples)
{
    return std::ranges::all_of(samples, [&format](const auto& sample) {
        const QString text = format.Write(sample);
        return InAnsiCodePage(text) && format.Read(text) == sample;
    });
}

}  // namespace

DateFormat::DateFormat(const QLocale& locale)
    : locale_(locale),
      pattern_(RepairedDatePattern(locale.dateFormat(QLocale::ShortFormat))),
      isDayFirst_(pattern_.indexOf(QLatin1Char('d')) < pattern_.indexOf(QLatin1Char('M')))
{
    const QDate samples[] = {{1921, 5, 14}, {2021, 2, 1}, {2030, 11, 12}};
    if (Serves(*this, samples))
        return;
    locale_ = QLocale::c();
    pattern_ = QStringLiteral("yyyy-MM-dd");
}

QDate DateFormat::Read(const QString& text) const
{
    static const QRegularExpression yearFirst(
        QStringLiteral("^([0-9]{4})([-./])([0-9]{1,2})\\2([0-9]{1,2})\\.?$"));
    static const QRegularExpression yearLast(
        QStringLiteral("^([0-9]{1,2})([-./])([0-9]{1,2})\\2([0-9]{4})\\.?$"));
    if (const auto match = yearFirst.match(text); match.hasMatch())
        return {match.captured(1).toInt(), match.captured(3).toInt(), match.captured(4).toInt()};
    const auto match = yearLast.match(text);
    if (!match.hasMatch())
        return {};
    const int day = match.captured(isDayFirst_ ? 1 : 3).toInt();
    const int month = match.captured(isDayFirst_ ? 3 : 1).toInt();
    return {match.captured(4).toInt(), month, day};
}

TimeFormat::TimeFormat(const QLocale& locale)
    : locale_(locale), pattern_(RepairedTimePattern(locale.timeFormat(QLocale::LongFormat)))
{
    const QTime samples[] = {{0, 0, 0}, {3, 7, 9}, {12, 30, 5}, {15, 7, 9}, {23, 59, 59}};
    if (IsKnownToQt(pattern_) && Serves(*this, samples))
        return;
    locale_ = QLocale::c();
    pattern_ = QStringLiteral("HH:mm:ss");
}

QTime TimeFormat::Read(const QString& text) const
{
    if (const QTime time = locale_.toTime(text, pattern_); time.isValid())
        return time;
    for (const char* pattern : {"H:m:ss", "H:m", "h:m:ss AP", "h:m AP"}) {
        if (const QTime time = QLocale::c().toTime(text, QLatin1String(pattern)); time.isValid())
            return time;
    }
    return {};
}

bool InAnsiCodePage(const QString& text)
{
    const std::string utf8 = FromQt(text);
    return FromAnsi(ToAnsi(utf8)) == utf8;
}

}  // namespace platform::regional
