#include "platform/regional/regional_formats.h"

#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "platform/regional/qt_values.h"

namespace platform::regional {
namespace {

bool NumbersServe(const QLocale& locale)
{
    return locale.zeroDigit() == QLatin1String("0") && InAnsiCodePage(locale.decimalPoint());
}

/// The text without the separators of its digit groups. Qt refuses them in 28 of its locales where only one digit stands
/// before the first, as in "1.500" in Spain, and in two of these where only two do.
QString WithoutGroupSeparators(QString text, const QLocale& locale)
{
    const QString separator = locale.groupSeparator();
    if (separator.isEmpty())
        return text;
    // Whoever has a no-break space there types a plain blank.
    const QString one =
        separator[0].isSpace() ? QStringLiteral("\\s") : QRegularExpression::escape(separator);
    const QRegularExpression::PatternOptions unicode = QRegularExpression::UseUnicodePropertiesOption;
    const QRegularExpression grouped(QStringLiteral("^[-+]?\\d{1,3}(?:%1\\d{3})+(?!%1|\\d)").arg(one),
                                     unicode);
    text = text.trimmed();
    QString integralPart = grouped.match(text).captured();
    const QString rest = text.mid(integralPart.size());
    return integralPart.remove(QRegularExpression(one, unicode)) + rest;
}

/// Digits alone mean the same in every region; most settings are no more than that.
std::optional<double> PlainDigits(std::string_view text)
{
    constexpr std::size_t kMostDigits = 9;
    const bool areDigits = !text.empty() && text.size() <= kMostDigits &&
                           std::ranges::all_of(text, [](char digit) { return digit >= '0' && digit <= '9'; });
    return areDigits ? std::optional<double>(std::stoi(std::string(text))) : std::nullopt;
}

std::optional<double> NumberIn(const QString& text, const QLocale& locale)
{
    bool isNumber = false;
    const double number = locale.toDouble(text, &isNumber);
    return isNumber && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

}  // namespace

RegionalFormats::RegionalFormats(const QLocale& locale)
    : date_(locale), time_(locale), typed_(locale), numbers_(NumbersServe(locale) ? locale : QLocale::c())
{}

std::string RegionalFormats::LongTime(DateTime moment) const
{
    return FromQt(time_.Write(TimeOf(moment)));
}

std::string RegionalFormats::ShortDate(DateTime moment) const
{
    return FromQt(date_.Write(DateOf(moment)));
}

std::string RegionalFormats::DecimalSign() const
{
    return FromQt(numbers_.decimalPoint());
}

std::optional<double> RegionalFormats::Number(std::string_view text) const
{
    if (const auto number = PlainDigits(text))
        return number;
    // Some locales write the exponent with a capital and accept no other.
    const QString spelled = ToQt(text).replace(QLatin1Char('e'), QLatin1Char('E'));
    if (spelled.isEmpty())
        return std::nullopt;
    for (const QLocale& locale : {typed_, numbers_}) {
        if (const auto number = NumberIn(spelled, locale))
            return number;
        if (const auto number = NumberIn(WithoutGroupSeparators(spelled, locale), locale))
            return number;
    }
    return std::nullopt;
}

std::optional<DateTime> RegionalFormats::DateOrTime(std::string_view text) const
{
    const QDate dayZero = DateOf(DayZero());
    const QTime midnight(0, 0);
    const QString whole = ToQt(text).trimmed();
    if (const QDate date = date_.Read(whole); date.isValid())
        return FromQt(date, midnight);
    if (const QTime time = time_.Read(whole); time.isValid())
        return FromQt(dayZero, time);
    const QDate date = date_.Read(whole.section(QLatin1Char(' '), 0, 0));
    const QTime time = time_.Read(whole.section(QLatin1Char(' '), 1).trimmed());
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return FromQt(date, time);
}

std::optional<QLocale> LocaleNamed(const std::string& name)
{
    QLocale locale(QString::fromStdString(name));
    const bool isKnown = locale.language() != QLocale::C || name == "C" || name == "POSIX";
    return isKnown ? std::optional(std::move(locale)) : std::nullopt;
}

}  // namespace platform::regional
