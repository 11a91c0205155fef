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
    struct Case {
        Value value;
        const char* text;
    };
    const auto moment = *kFormats.DateOrTime("2021-05-14 15:07:09");
    for (const Case& c :
         {Case{moment, "15:07:09"}, Case{"2021-05-14 08:00:00", "08:00:00"}, Case{"08:00:01", "08:00:01"},
          Case{"about noon", "about noon"}, Case{0.5, "12:00:00"}, Case{44330, "00:00:00"},
          Case{platform::ExactNumber{"-1.25"}, "06:00:00"}})
        EXPECT_EQ(trellivan::LongTimeText(c.value, kFormats), c.text);
    EXPECT_EQ(FailureOf([] { return trellivan::LongTimeText(platform::Null{}, kFormats); }), 94);
    EXPECT_EQ(FailureOf([] { return trellivan::LongTimeText(1e9, kFormats); }), 6);
}

}  // namespace
