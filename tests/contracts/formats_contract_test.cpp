#include <gtest/gtest.h>

#include <QLocale>
#include <memory>
#include <vector>

#include "fakes/clock_and_formats.h"
#include "platform/regional/regional_formats.h"

namespace platform {
namespace {

using namespace std::chrono_literals;

/// The fake, a region that writes as little differently from it as a region can, and two that do.
std::vector<std::unique_ptr<RegionalFormats>> AllFormats()
{
    std::vector<std::unique_ptr<RegionalFormats>> formats;
    formats.push_back(std::make_unique<fakes::PlainFormats>());
    for (const auto language : {QLocale::C, QLocale::German, QLocale::Bulgarian})
        formats.push_back(std::make_unique<regional::RegionalFormats>(QLocale(language)));
    return formats;
}

TEST(FormatsContract, NumbersAreWholeTextsOfDigits)
{
    for (const auto& formats : AllFormats()) {
        const std::string half = formats->DecimalSign() + "5";
        const std::pair<std::string, double> numbers[] = {
            {"25", 25}, {"-5", -5}, {"+7", 7}, {" 7 ", 7}, {"-0" + half, -0.5}, {"2" + half + "E1", 25}};
        for (const auto& [text, number] : numbers)
            EXPECT_EQ(formats->Number(text), number) << text;
        for (const char* text : {"", " ", "abc", "7x", "inf", "nan", "0x10", "1e999", "- 5", "--5", "5-"})
            EXPECT_EQ(formats->Number(text), std::nullopt) << text;
    }
}

TEST(FormatsContract, WhatIsWrittenReadsBack)
{
    for (const auto& formats : AllFormats()) {
        const std::chrono::local_days day{2021y / 12 / 31};
        const DateTime moment = day + 15h + 7min + 9s;
        EXPECT_EQ(formats->DateOrTime(formats->ShortDate(moment)), std::optional<DateTime>(day));
        EXPECT_EQ(formats->DateOrTime(formats->LongTime(moment + 999ms)), DayZero() + (moment - day));
        EXPECT_EQ(formats->DateOrTime(GeneralDate(moment, *formats)), moment);
        for (const char* text : {"", " ", "noon", "2021-13-01", "25:00:00", "2021-02-30"})
            EXPECT_EQ(formats->DateOrTime(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace platform
