#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

using trellivan::ConvertIniText;
using trellivan::IniValue;
namespace kind = trellivan::value_kind;

TEST(IniValue, FollowsTheTableOfKinds)
{
    const platform::fakes::PlainFormats formats;
    const platform::DateTime noon = *formats.DateOrTime("2021-05-14 12:00:00");
    const std::tuple<const char*, std::int32_t, std::optional<IniValue>> cases[] = {
        {"32767", kind::kInteger, std::int16_t{32767}},
        {"32767.4", kind::kInteger, {}},
        {"-32768", kind::kInteger, std::int16_t{-32768}},
        {"2.5", kind::kInteger, std::int16_t{2}},
        {"abc", kind::kInteger, {}},
        {"2147483647", kind::kLong, 2147483647},
        {"2147483648", kind::kLong, {}},
        {"0.1", kind::kSingle, 0.1F},
        {"0.1", kind::kDouble, 0.1},
        {"2021-05-14 12:00:00", kind::kDate, noon},
        {"noon", kind::kDate, {}},
        {" as read ", kind::kText, std::string(" as read ")},
        {"TRUE", kind::kBoolean, true},
        {"False", kind::kBoolean, false},
        {"0", kind::kBoolean, false},
        {"-3", kind::kBoolean, true},
        {"yes", kind::kBoolean, {}},
        {"1", 6, {}},
        {"true", 10, {}},
    };
    for (const auto& [text, valueKind, result] : cases)
        EXPECT_EQ(ConvertIniText(text, valueKind, formats), result) << text << " as kind " << valueKind;
}

TEST(GetIniValue, StoresAValueOfTheKindOrNothing)
{
    Program program;
    IniValue value = std::string("before");
    const auto get = [&](std::int32_t valueKind) {
        return program.globals.GetINIValue("/a.ini", "Numbers", "Key", value, valueKind, 256);
    };
    program.profile.values[{"Numbers", "Key"}] = "1e39";
    EXPECT_FALSE(get(kind::kText)) << "no file";
    program.files.contents["/a.ini"] = "";
    for (const std::int32_t none : {12, 1, kind::kLong, kind::kSingle})
        EXPECT_FALSE(get(none)) << none;
    EXPECT_EQ(value, IniValue(std::string("before")));
    EXPECT_TRUE(get(kind::kDouble));
    EXPECT_EQ(value, IniValue(1e39));
    EXPECT_EQ(
        program.TakeRecords(),
        Texts{"6|Overflow: the number 1e+39 is not between -3.40282346638529e+38 and 3.40282346638529e+38|"
              "modGlobals.GetINIValue(/a.ini, Numbers, Key,, 4, 256)"});
}

}  // namespace
