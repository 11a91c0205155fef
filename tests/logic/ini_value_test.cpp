#include <gtest/gtest.h>

#include "logic/program.h"

namespace {

using trellivan::ConvertIniText;
using trellivan::IniValue;
namespace kind = trellivan::value_kind;

TEST(IniValue, FollowsTheTableOfKinds)
{
    const platform::fakes::PlainFormats formats;
    using Result = std::optional<IniValue>;
    struct Case {
        const char* text;
        std::int32_t valueKind;
        Result result;
    };
    const auto noon = *formats.DateOrTime("2021-05-14 12:00:00");
    for (const Case& c : {Case{"32767", kind::kInteger, std::int16_t{32767}},
                          Case{"32767.4", kind::kInteger, {}},
                          Case{"32768", kind::kInteger, {}},
                          Case{"-32768", kind::kInteger, std::int16_t{-32768}},
                          Case{"1.5", kind::kInteger, std::int16_t{2}},
                          Case{"2.5", kind::kInteger, std::int16_t{2}},
                          Case{"abc", kind::kInteger, {}},
                          Case{"2147483647", kind::kLong, 2147483647},
                          Case{"2147483648", kind::kLong, {}},
                          Case{"0.1", kind::kSingle, 0.1F},
                          Case{"0.1", kind::kDouble, 0.1},
                          Case{"2021-05-14 12:00:00", kind::kDate, noon},
                          Case{"noon", kind::kDate, {}},
                          Case{" as read ", kind::kText, std::string(" as read ")},
                          Case{"TRUE", kind::kBoolean, true},
                          Case{"False", kind::kBoolean, false},
                          Case{"0", kind::kBoolean, false},
                          Case{"-3", kind::kBoolean, true},
                          Case{"yes", kind::kBoolean, {}},
                          Case{"1", 6, {}},
                          Case{"1", 9, {}},
                          Case{"true", 10, {}}})
        EXPECT_EQ(ConvertIniText(c.text, c.valueKind, formats), c.result)
            << c.text << " as kind " << c.valueKind;
}

/// GetINIValue alone, over files and a profile of its own.
class GetIniValue : public testing::Test {
protected:
    bool Get(std::int32_t valueKind)
    {
        return globals_.GetINIValue("/a.ini", "Numbers", "Key", value, valueKind, 256);
    }

    platform::fakes::Journal journal;
    platform::fakes::FileSystem files{journal, "files"};
    platform::fakes::ProfileFile profile{journal, "profile"};
    platform::fakes::ErrorLog errorLog;
    platform::fakes::Clock clock;
    platform::fakes::PlainFormats formats;
    IniValue value = std::string("before");

private:
    trellivan::modGlobals globals_{{}, errorLog, files, profile, clock, formats};
};

TEST_F(GetIniValue, LeavesTheValueUntouchedUnlessItStoresOne)
{
    EXPECT_FALSE(Get(kind::kText));
    EXPECT_EQ(journal.Calls(), Texts{"files.FileExists /a.ini"});
    files.contents["/a.ini"] = "";
    EXPECT_FALSE(Get(kind::kText));
    profile.values[{"Numbers", "Key"}] = "12";
    EXPECT_FALSE(Get(12));
    EXPECT_FALSE(Get(1));
    EXPECT_EQ(value, IniValue(std::string("before")));
    EXPECT_TRUE(Get(kind::kLong));
    EXPECT_EQ(value, IniValue(12));
    EXPECT_EQ(journal.Calls().back(), "profile.GetPrivateProfileStringA Numbers Key 256 /a.ini");
}

TEST_F(GetIniValue, RecordsAFailureWithItsArguments)
{
    files.contents["/a.ini"] = "";
    profile.values[{"Numbers", "Key"}] = "1e39";
    EXPECT_FALSE(Get(kind::kSingle));
    EXPECT_EQ(
        errorLog.records,
        Texts{"6|Overflow: the number 1e+39 is not between -3.40282346638529e+38 and 3.40282346638529e+38|"
              "modGlobals.GetINIValue(/a.ini, Numbers, Key,, 4, 256)"});
}

}  // namespace
