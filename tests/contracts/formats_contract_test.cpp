#include <gtest/gtest.h>

#include <QLocale>

#include "fakes/clock_and_formats.h"
#include "platform/regional/regional_formats.h"

namespace platform {
namespace {

using namespace std::chrono_literals;

struct FakeFormats {
    fakes::PlainFormats formats;
};

/// Of a region that writes as little differently from the fake as a region can, and of two that do.
template <QLocale::Language language>
struct RealFormats {
    regional::RegionalFormats formats{QLocale(language)};
};

template <class Formats>
class FormatsContract : public testing::Test {
protected:
    const Formats its;
};

using Kinds = testing::Types<FakeFormats, RealFormats<QLocale::C>, RealFormats<QLocale::German>,
                             RealFormats<QLocale::Bulgarian>>;
TYPED_TEST_SUITE(FormatsContract, Kinds);

TYPED_TEST(FormatsContract, NumbersAreWholeTextsOfDigits)
{
    const RegionalFormats& formats = this->its.formats;
    const std::string half = formats.DecimalSign() + "5";
    const std::pair<std::string, std::optional<double>> cases[] = {
        {"25", 25},
        {"-5", -5},
        {"+7", 7},
        {" 7 ", 7},
        {"2" + half, 2.5},
        {"-0" + half, -0.5},
        {"1e3", 1000},
        {"2" + half + "E1", 25},
        {"", std::nullopt},
        {" ", std::nullopt},
        {"abc", {}},
        {"7x", std::nullopt},
        {"inf", {}},
        {"nan", {}},
        {"0x10", {}},
        {"1e999", {}},
        {"- 5", std::nullopt},
        {"--5", std::nullopt},
        {"5-", std::nullopt},
    };
    for (const auto& [text, number] : cases)
        EXPECT_EQ(formats.Number(text), number) << '"' << text << '"';
}

TYPED_TEST(FormatsContract, WhatIsWrittenReadsBack)
{
    const RegionalFormats& formats = this->its.formats;
    for (const std::chrono::local_days day :
         {DayZero() + std::chrono::days{1}, std::chrono::local_days{2021y / 5 / 6},
          std::chrono::local_days{2021y / 12 / 31}, std::chrono::local_days{9999y / 12 / 31}}) {
        const std::string date = formats.ShortDate(day + 15h);
        EXPECT_EQ(date.find(' '), std::string::npos) << date;
        EXPECT_EQ(formats.DateOrTime(date), std::optional<DateTime>(day)) << date;
    }
    for (const std::chrono::milliseconds time : {0ms, 1000ms, 54'429'000ms, 86'399'000ms}) {
        const std::string text = formats.LongTime(std::chrono::local_days{2021y / 5 / 6} + time + 999ms);
        EXPECT_EQ(formats.DateOrTime(text), std::optional<DateTime>(DayZero() + time)) << text;
    }
    for (const char* text : {"", " ", "noon", "2021-13-01", "25:00:00", "2021-02-30"})
        EXPECT_EQ(formats.DateOrTime(text), std::nullopt) << text;
}

}  // namespace
}  // namespace platform
