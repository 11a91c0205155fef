#include "replay/record_format.h"

#include <gtest/gtest.h>

#include "logic/program.h"
#include "support/failure_of.h"

namespace {

using platform::Value;

const platform::fakes::PlainFormats kFormats;

TEST(StringToBytes, GivesOneByteForEachCharacter)
{
    using Bytes = std::vector<std::uint8_t>;
    EXPECT_EQ(trellivan::StringToBytes("AB"), (Bytes{65, 66}));
    EXPECT_EQ(trellivan::StringToBytes(std::string("\0\xC3\xBC\xE2\x82\xAC", 6)), (Bytes{0, 0xFC, 0x80}));
    EXPECT_EQ(FailureOf([] { return trellivan::StringToBytes(""); }), 9);
    const auto failure = ThrownBy([] { return trellivan::StringToBytes("A\xF0\x9F\x98\x80"); });
    EXPECT_EQ(failure.Number(), 6);
    EXPECT_EQ(failure.Description(), "Overflow: the record's character U+1F600 fits in no byte");
}

TEST(LongTimeText, ShowsTheTimeOfWhatReadsAsOne)
{
    const std::pair<Value, const char*> cases[] = {
        {*kFormats.DateOrTime("2021-05-14 15:07:09"), "15:07:09"},
        {"2021-05-14 08:00:00", "08:00:00"},
        {"about noon", "about noon"},
        {0.5, "12:00:00"},
        {platform::ExactNumber{"-1.25"}, "06:00:00"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(trellivan::LongTimeText(value, kFormats), text);
    EXPECT_EQ(FailureOf([] { return trellivan::LongTimeText(platform::Null{}, kFormats); }), 94);
}

}  // namespace
