#include "platform/value.h"

#include <gtest/gtest.h>

#include "fakes/clock_and_formats.h"
#include "platform/conversions.h"
#include "support/failure_of.h"

namespace {

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
    const std::pair<Value, const char*> cases[] = {
        {true, "True"},
        {false, "False"},
        {-2147483647 - 1, "-2147483648"},
        {0.1F, "0,1"},
        {16777216.0F, "1,677722E+07"},
        {0.1 + 0.2, "0,3"},
        {-0.0, "0"},
        {1e15, "1E+15"},
        {123456789012345.0, "123456789012345"},
        {1.0 / 3, "0,333333333333333"},
        {platform::ExactNumber{"-922337203685477.5808"}, "-922337203685477,5808"},
        {"as it is", "as it is"},
        {platform::Guid{"{0}"}, "{0}"},
        {FromDayNumber(38057.5), "2004-03-11 12:00:00"},
        {FromDayNumber(38057), "2004-03-11"},
        {FromDayNumber(0.25), "06:00:00"},
        {FromDayNumber(0), "00:00:00"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(ToText(value, CommaFormats()), text);
    EXPECT_EQ(FailureOf([] { return ToText(platform::Null{}, CommaFormats()); }), 94);
    EXPECT_EQ(FailureOf([] { return ToText(platform::Binary{{65}}, CommaFormats()); }), 13);
}

TEST(DayNumbers, CountTheirTimeForwardOnBothSidesOfDayZero)
{
    const std::pair<double, const char*> cases[] = {{-1.25, "1899-12-29 06:00:00"},
                                                    {38057.999999999, "2004-03-12"},
                                                    {-657434, "0100-01-01"},
                                                    {2958465.9999, "9999-12-31 23:59:51"}};
    for (const auto& [number, text] : cases)
        EXPECT_EQ(GeneralDate(FromDayNumber(number), CommaFormats()), text);
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

TEST(Conversions, NameThePortThatIsNone)
{
    const std::pair<const char*, const char*> cases[] = {
        {"pier", "Type mismatch: the port \"pier\" is not a number"},
        {"99999999999", "Overflow: the port 99999999999 is not between -2147483648 and 2147483647"}};
    for (const auto& [text, description] : cases)
        EXPECT_EQ(ThrownBy([text = text] { return platform::ToLong(text, CommaFormats()); }).Description(),
                  description);
}

}  // namespace
