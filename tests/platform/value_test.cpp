#include "platform/value.h"

#include <gtest/gtest.h>

#include "fakes/clock_and_formats.h"
#include "platform/conversions.h"
#include "support/failure_of.h"

namespace {

using platform::DateTime;
using platform::Failure;
using platform::FromDayNumber;
using platform::Value;

/// The plain formats with a decimal comma.
class CommaFormats : public platform::fakes::PlainFormats {
public:
    [[nodiscard]] std::string DecimalSign() const override { return ","; }
};

TEST(ValueText, FollowsItsType)
{
    struct Case {
        Value value;
        const char* text;
    };
    for (const Case& c :
         {Case{true, "True"}, Case{false, "False"}, Case{-2147483647 - 1, "-2147483648"}, Case{1.5F, "1,5"},
          Case{0.1F, "0,1"}, Case{16777216.0F, "1,677722E+07"}, Case{0.1 + 0.2, "0,3"}, Case{-0.0, "0"},
          Case{1e15, "1E+15"}, Case{123456789012345.0, "123456789012345"}, Case{1.0 / 3, "0,333333333333333"},
          Case{platform::ExactNumber{"-922337203685477.5808"}, "-922337203685477,5808"},
          Case{"as it is", "as it is"}, Case{platform::Guid{"{0}"}, "{0}"},
          Case{FromDayNumber(38057.5), "2004-03-11 12:00:00"}, Case{FromDayNumber(38057), "2004-03-11"},
          Case{FromDayNumber(0.25), "06:00:00"}, Case{FromDayNumber(0), "00:00:00"}})
        EXPECT_EQ(ToText(c.value, CommaFormats()), c.text);
}

TEST(ValueText, NullAndBinaryHaveNone)
{
    EXPECT_EQ(FailureOf([] { return ToText(platform::Null{}, CommaFormats()); }), 94);
    EXPECT_EQ(FailureOf([] { return ToText(platform::Binary{{65}}, CommaFormats()); }), 13);
}

TEST(DayNumbers, CountTheirTimeForwardOnBothSidesOfDayZero)
{
    const platform::fakes::PlainFormats formats;
    struct Case {
        double number;
        const char* text;
    };
    for (const Case& c : {Case{-1.25, "1899-12-29 06:00:00"}, Case{-0.5, "1899-12-30 12:00:00"},
                          Case{38057.999999999, "2004-03-12 00:00:00"}, Case{-657434, "0100-01-01 00:00:00"},
                          Case{2958465.9999, "9999-12-31 23:59:51"}}) {
        const DateTime moment = FromDayNumber(c.number);
        EXPECT_EQ(formats.ShortDate(moment) + " " + formats.LongTime(moment), c.text) << c.number;
    }
}

TEST(DayNumbers, OutsideTheYears100To9999AreAnOverflow)
{
    for (const double number : {-657435.0, 2958466.0, 1e300, std::nan("")})
        EXPECT_THROW(static_cast<void>(FromDayNumber(number)), Failure) << number;
}

TEST(Conversions, RoundHalvesToTheEvenNeighbourWithinTheType)
{
    EXPECT_EQ(platform::ToInteger<std::int16_t>(2.5), 2);
    EXPECT_EQ(platform::ToInteger<std::int16_t>(-3.5), -4);
    EXPECT_EQ(platform::ToInteger<std::int16_t>(32767.4), 32767);
    for (const double number : {32767.5, -32768.51, std::nan("")})
        EXPECT_THROW(static_cast<void>(platform::ToInteger<std::int16_t>(number)), Failure) << number;
}

}  // namespace
