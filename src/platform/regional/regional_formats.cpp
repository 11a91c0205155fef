#include "platform/regional/regional_formats.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "platform/ansi_code_page.h"
#include "platform/regional/patterns.h"
#include "platform/regional/qt_values.h"

namespace platform::regional {
namespace {

constexpr QLatin1String kPlainDate("yyyy-MM-dd");
constexpr QLatin1String kPlainTime("HH:mm:ss");

bool InAnsiCodePage(const std::string& utf8)
{
    return FromAnsi(ToAnsi(utf8)) == utf8;
}

bool NumbersServe(const QLocale& locale)
{
    return locale.zeroDigit() == QLatin1String("0") && InAnsiCodePage(FromQt(locale.decimalPoint()));
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

}  // namespace

RegionalFormats::RegionalFormats(const QLocale& locale)
    : date_{locale, DatePattern(locale)},
      time_{locale, TimePattern(locale)},
      isDayFirst_(IsDayFirst(locale)),
      typed_(locale),
      numbers_(NumbersServe(locale) ? locale : QLocale::c())
{
    if (!DateFormatServes())
        date_ = {QLocale::c(), kPlainDate};
    if (!TimeFormatServes())
        time_ = {QLocale::c(), kPlainTime};
}

bool RegionalFormats::DateFormatServes() const
{
    constexpr std::array kSamples = {std::array{1921, 5, 14}, std::array{2021, 2, 1},
                                     std::array{2030, 11, 12}};
    return std::ranges::all_of(kSamples, [this](const auto& sample) {
        const QDate date(sample[0], sample[1], sample[2]);
        const QString text = date_.locale.toString(date, date_.pattern);
        return InAnsiCodePage(FromQt(text)) && Date(text) == date;
    });
}

bool RegionalFormats::TimeFormatServes() const
{
    constexpr std::array kSamples = {std::array{0, 0, 0}, std::array{3, 7, 9}, std::array{12, 30, 5},
                                     std::array{15, 7, 9}, std::array{23, 59, 59}};
    return !time_.pattern.isEmpty() && std::ranges::all_of(kSamples, [this](const auto& sample) {
        const QTime time(sample[0], sample[1], sample[2]);
        const QString text = time_.locale.toString(time, time_.pattern);
        return InAnsiCodePage(FromQt(text)) && Time(text) == time;
    });
}

std::string RegionalFormats::LongTime(DateTime moment) const
{
    return FromQt(time_.locale.toString(TimeOf(moment), time_.pattern));
}

std::string RegionalFormats::ShortDate(DateTime moment) const
{
    return FromQt(date_.locale.toString(DateOf(moment), date_.pattern));
}

std::string RegionalFormats::DecimalSign() const
{
    return FromQt(numbers_.decimalPoint());
}

std::optional<double> RegionalFormats::Number(std::string_view text) const
{
    // Some locales write the exponent with a capital and accept no other.
    const QString spelled = ToQt(text).replace(QLatin1Char('e'), QLatin1Char('E'));
    for (const QLocale& locale : {typed_, numbers_}) {
        for (const QString& form : {spelled, WithoutGroupSeparators(spelled, locale)}) {
            bool isNumber = false;
            const double number = locale.toDouble(form, &isNumber);
            if (isNumber && std::isfinite(number))
                return number;
        }
    }
    return std::nullopt;
}

QDate RegionalFormats::Date(const QString& text) const
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

QTime RegionalFormats::Time(const QString& text) const
{
    if (const QTime time = time_.locale.toTime(text, time_.pattern); time.isValid())
        return time;
    for (const char* format : {"H:m:ss", "H:m", "h:m:ss AP", "h:m AP"}) {
        if (const QTime time = QLocale::c().toTime(text, QLatin1String(format)); time.isValid())
            return time;
    }
    return {};
}

std::optional<DateTime> RegionalFormats::DateOrTime(std::string_view text) const
{
    const QDate dayZero = DateOf(DayZero());
    const QTime midnight(0, 0);
    const QString whole = ToQt(text).trimmed();
    if (const QDate date = Date(whole); date.isValid())
        return FromQt(date, midnight);
    if (const QTime time = Time(whole); time.isValid())
        return FromQt(dayZero, time);
    const QDate date = Date(whole.section(QLatin1Char(' '), 0, 0));
    const QTime time = Time(whole.section(QLatin1Char(' '), 1).trimmed());
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return FromQt(date, time);
}

}  // namespace platform::regional
