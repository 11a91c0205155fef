#include "platform/regional/regional_formats.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <vector>

#include "platform/ansi_code_page.h"
#include "platform/regional/qt_values.h"

namespace platform::regional {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

DateTime Moment(int years, unsigned months, unsigned dayOfMonth, milliseconds timeOfDay = 0ms)
{
    return local_days{year{years} / month{months} / day{dayOfMonth}} + timeOfDay;
}

constexpr milliseconds kAfternoon = 15h + 7min + 9s;

QList<QLocale> AllLocales()
{
    const QList<QLocale> locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    EXPECT_GT(locales.size(), 300);
    return locales;
}

TEST(RegionalFormats, AreThoseOfTheLocaleWithItsFlawsRepaired)
{
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {"C", "15:07:09", "2021-05-14", "."},      {"en_US", "3:07:09 PM", "5/14/2021", "."},
        {"en_GB", "15:07:09", "14/05/2021", "."},  {"de_DE", "15:07:09", "14.05.2021", ","},
        {"fr_FR", "15:07:09", "14/05/2021", ","},  {"fr_CA", "15 h 07 min 09 s", "2021-05-14", ","},
        {"fi_FI", "15.07.09", "14.5.2021", ","},   {"hu_HU", "15:07:09", "2021.05.14.", ","},
        {"sv_SE", "15:07:09", "2021-05-14", ","},  {"ja_JP", "15:07:09", "2021/05/14", "."},
        {"ko_KR", "15:07:09", "2021.5.14.", "."},  {"bg_BG", "15:07:09", "2021-05-14", ","},
        {"ar_EG", "15:07:09", "2021-05-14", "."},  {"fa_IR", "15:07:09", "2021-05-14", "."},
        {"zh_TW", "15:07:09", "2021/5/14", "."},   {"es_CO", "3:07:09 p.\u00A0m.", "14/05/2021", ","},
        {"en_AU", "3:07:09 pm", "14/5/2021", "."}, {"pt_MO", "3:07:09 da tarde", "14/05/2021", ","},
    };
    const DateTime moment = Moment(2021, 5, 14, kAfternoon + 999ms);
    for (const auto& [locale, time, date, decimalSign] : cases) {
        const RegionalFormats formats{QLocale(locale)};
        EXPECT_EQ(formats.LongTime(moment), time) << locale;
        EXPECT_EQ(formats.ShortDate(moment), date) << locale;
        EXPECT_EQ(formats.DecimalSign(), decimalSign) << locale;
    }
}

TEST(RegionalFormats, WriteWhatReadsBackInEveryLocale)
{
    constexpr seconds kTimes[] = {0s, 1s, 1h, 11h + 59min + 59s, 12h, 15h + 7min + 9s, 23h + 59min + 59s};
    std::vector<DateTime> moments = {Moment(100, 1, 1, 1s), Moment(1899, 12, 29, kAfternoon),
                                     Moment(9999, 12, 31, kAfternoon)};
    for (int day = 0; day < 1500; day += 17)
        moments.push_back(Moment(1999, 12, 30) + days(day) + kTimes[moments.size() % std::size(kTimes)]);
    for (const QLocale& locale : AllLocales()) {
        const RegionalFormats formats(locale);
        const std::string name = locale.name().toStdString();
        for (const DateTime& moment : moments) {
            const std::string date = formats.ShortDate(moment);
            const std::string text = GeneralDate(moment, formats);
            ASSERT_EQ(formats.DateOrTime(date), floor<days>(moment)) << name << ": " << date;
            ASSERT_EQ(formats.DateOrTime(text), moment) << name << ": " << text;
            ASSERT_EQ(FromAnsi(ToAnsi(text)), text) << name;
            ASSERT_EQ(date.find_first_not_of("0123456789./-"), std::string::npos) << name << ": " << date;
        }
        EXPECT_EQ(formats.Number("1" + formats.DecimalSign() + "5"), 1.5) << name;
        EXPECT_EQ(formats.Number("-32000"), -32000) << name;
        EXPECT_EQ(formats.Number("1e3"), 1000) << name;
    }
}

/// Where the half day stands beside the time, read by nothing of Qt.
TEST(RegionalFormats, WriteTheHourAndItsHalfDayAndNothingElseInEveryLocale)
{
    const QRegularExpression time("^(\\D*)(\\d{1,2})(\\D+)(\\d\\d?)(\\D+)(\\d\\d)(\\D*)$");
    const QRegularExpression quoted("'([^']*)'");
    for (const QLocale& locale : AllLocales()) {
        const RegionalFormats formats(locale);
        for (int hour = 0; hour < 24; ++hour) {
            const QString text = ToQt(formats.LongTime(Moment(2021, 5, 14, hours(hour) + 7min + 9s)));
            const QString name = locale.name() + ": " + text;
            const auto parts = time.match(text);
            ASSERT_TRUE(parts.hasMatch()) << name.toStdString();
            const QString halfDay = hour < 12 ? locale.amText() : locale.pmText();
            const bool inHalfDays = parts.captured(7) == " " + halfDay || parts.captured(1) == halfDay + " ";
            const int shown = inHalfDays ? (hour + 11) % 12 + 1 : hour;
            EXPECT_EQ(parts.captured(2).toInt(), shown) << name.toStdString();
            EXPECT_EQ(parts.captured(4).toInt(), 7) << name.toStdString();
            EXPECT_EQ(parts.captured(6), "09") << name.toStdString();
            QString own = halfDay;
            for (const auto& word : quoted.globalMatch(locale.timeFormat()))
                own += word.captured(1);
            for (const QChar character : text)
                EXPECT_TRUE(!character.isLetter() || own.contains(character)) << name.toStdString();
        }
    }
}

TEST(RegionalFormats, ReadDatesAndTimes)
{
    const std::tuple<const char*, const char*, std::optional<DateTime>> cases[] = {
        {"en_US", "5/4/2021", Moment(2021, 5, 4)},
        {"en_GB", "5/4/2021", Moment(2021, 4, 5)},
        {"de_DE", " 4.5.2021 15:07:09 ", Moment(2021, 5, 4, kAfternoon)},
        {"de_DE", "2021-05-04 3:07:09 pm", Moment(2021, 5, 4, kAfternoon)},
        {"bg_BG", "06.05.2021", Moment(2021, 5, 6)},
        {"ar_EG", "6/5/2021", Moment(2021, 5, 6)},
        {"es_CO", "6/5/2021 3:07:09 p.\u00A0m.", Moment(2021, 5, 6, kAfternoon)},
        {"C", "15:07", Moment(1899, 12, 30, 15h + 7min)},
    };
    for (const auto& [locale, text, moment] : cases)
        EXPECT_EQ(RegionalFormats{QLocale(locale)}.DateOrTime(text), moment) << locale << text;
    for (const char* text :
         {"24:00:00", "2021-02-29", "5/14/21", "5/14-2021", "5/4/2021 x", "x 15:07:09", "5"})
        EXPECT_EQ(RegionalFormats{QLocale("en_US")}.DateOrTime(text), std::nullopt) << text;
}

TEST(RegionalFormats, ReadNumbers)
{
    const std::tuple<const char*, const char*, double> cases[] = {
        {"en_US", "1,500", 1500},      {"de_DE", "2,5", 2.5},         {"fr_FR", "1 500,5", 1500.5},
        {"ar_EG", "2.5", 2.5},         {"ar_EG", "\u0662\u0665", 25}, {"es_ES", "-1.500,25", -1500.25},
        {"es_ES", "1.500.000", 1.5e6}, {"pl_PL", " 1 500 ", 1500},    {"ee_GH", "12,500", 12500},
    };
    for (const auto& [locale, text, number] : cases)
        EXPECT_EQ(RegionalFormats{QLocale(locale)}.Number(text), number) << locale << text;
    EXPECT_EQ(RegionalFormats{QLocale("en_US")}.Number("1,50,0"), std::nullopt);
    for (const char* text : {"2.5", "1.50", "1.5000", "1.500.00", "1,500.000", ".500", "1..500", "1 500"})
        for (const char* locale : {"de_DE", "es_ES"})
            EXPECT_EQ(RegionalFormats{QLocale(locale)}.Number(text), std::nullopt) << locale << text;
    for (const QLocale& locale : AllLocales()) {
        const RegionalFormats ofLocale(locale);
        for (const char* grouped : {"1,500", "12,500"}) {
            const QString text = QString(grouped).replace(',', locale.groupSeparator());
            EXPECT_EQ(ofLocale.Number(FromQt(text)), QString(grouped).remove(',').toInt())
                << FromQt(locale.name() + " " + text);
        }
    }
}

}  // namespace
}  // namespace platform::regional
