#include "platform/regional/patterns.h"

#include <QRegularExpression>

namespace platform::regional {
namespace {

bool IsKnownToQt(QString timePattern)
{
    static const QRegularExpression quoted(QStringLiteral("'[^']*'"));
    static const QRegularExpression unknownLetter(QStringLiteral("(?![HhmsAaPp])[A-Za-z]"));
    return !timePattern.remove(quoted).contains(unknownLetter);
}

}  // namespace

QString TimePattern(const QLocale& locale)
{
    // The zone stands as " t", "t ", " (t)", ", t" or "[t]".
    static const QRegularExpression zone(QStringLiteral("[ ,]*[(\\[]?\\bt\\b[)\\]]?\\s*"));
    QString pattern = locale.timeFormat(QLocale::LongFormat);
    pattern.replace(QChar(0x202F), QLatin1Char(' ')).remove(zone);
    // AP gives capitals, Ap the letters that the region itself uses.
    pattern.replace(QLatin1String("AP"), QLatin1String("Ap"));
    return IsKnownToQt(pattern) ? pattern.trimmed() : QString();
}

QString DatePattern(const QLocale& locale)
{
    static const QRegularExpression shortYear(QStringLiteral("(?<!y)yy(?!y)"));
    static const QRegularExpression blanksAndMarks(QStringLiteral("[\\s\\x{A0}\\p{Cf}]"));
    QString pattern = locale.dateFormat(QLocale::ShortFormat);
    return pattern.replace(shortYear, QStringLiteral("yyyy")).remove(blanksAndMarks);
}

bool IsDayFirst(const QLocale& locale)
{
    const QString pattern = locale.dateFormat(QLocale::ShortFormat);
    return pattern.indexOf(QLatin1Char('d')) < pattern.indexOf(QLatin1Char('M'));
}

}  // namespace platform::regional
