#include "platform/files/profile_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "platform/ansi_code_page.h"

namespace platform::files {
namespace {

constexpr std::size_t kLimit = 255;

std::string Find(std::string_view text, std::string_view key)
{
    return FindProfileValue(text, "TCP/IP Settings", key, kLimit);
}

std::string With(std::string_view text, const std::string& key, const std::string& value)
{
    return WithProfileEntry(text, {"S", key, value});
}

TEST(ProfileText, FindsAValueAsPeopleWriteIt)
{
    const struct {
        const char* text;
        const char* value;
    } cases[] = {
        {"[TCP/IP Settings]\r\nPort=5015\r\n", "5015"},
        {"[tcp/ip settings]\nPORT=5015", "5015"},
        {"\xEF\xBB\xBF[TCP/IP Settings]\nPort=5015\n", "5015"},
        {"  [ TCP/IP Settings ] ; the feed\n\tPort \t=\t 5015 \t\r\r\n", "5015"},
        {"Port=1\n[Other]\nPort=2\n[TCP/IP Settings]\nPort=5015\nPort=3\n[Other]\nPort=4\n", "5015"},
        {"[TCP/IP Settings]\n[Other]\n[TCP/IP Settings]\nPort=5015\n", "5015"},
        {"[TCP/IP Settings]\n;Port=1\n; [Other]\n# Port=2\nPort\nPort=5015\n", "5015"},
        {"[TCP/IP Settings]\n[Unclosed\nPort=5015\n", "5015"},
        {"[TCP/IP Settings]\nPort=a=b;c#d\n", "a=b;c#d"},
        {"[TCP/IP Settings]\nPort=\" 5015 \"\n", " 5015 "},
        {"[TCP/IP Settings]\nPort='5015'\n", "5015"},
        {"[TCP/IP Settings]\nPort=\"\"5015\"\"\n", "\"5015\""},
        {"[TCP/IP Settings]\nPort=\"5015'\n", "\"5015'"},
        {"[TCP/IP Settings]\nPort=\"\n", "\""},
        {"[TCP/IP Settings]\nPort=caf\xE9\n", "caf\xC3\xA9"},
        {"[TCP/IP Settings]\nPort=caf\xC3\xA9\n", "caf\xC3\xA9"},
        {"[TCP/IP Settings]\nPort=\xC3\xA9\xE9\n", "\xC3\x83\xC2\xA9\xC3\xA9"},
        {"[TCP/IP Settings]\nPort= \n", ""},
        {"[TCP/IP Settings]\nPorts=1\n", ""},
        {"[TCP/IP]\nPort=1\n", ""},
        {"Port=1", ""},
        {"", ""},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(Find(text, "Port"), value) << text;
}

TEST(ProfileText, CutsAValueAtCharactersNotBytes)
{
    for (const std::string& stored : {std::string("\xC3\xA9\xC3\xA9\xC3\xA9"), std::string("\xE9\xE9\xE9")}) {
        const std::string text = "[S]\nk=" + stored;
        EXPECT_EQ(FindProfileValue(text, "S", "k", 2), "\xC3\xA9\xC3\xA9");
        EXPECT_EQ(FindProfileValue(text, "S", "k", 0), "");
    }
}

TEST(ProfileText, ChangesNoByteButTheValue)
{
    const struct {
        const char* name;
        const char* before;
        const char* after;
    } cases[] = {
        {"value replaced between its blanks", "; a\n\n[s]\r\n KEY \t=  old \t\r\n\r\n[T]\nkey=1",
         "; a\n\n[s]\r\n KEY \t=  new \t\r\n\r\n[T]\nkey=1"},
        {"quotes go with the value", "[S]\nkey=\"old one\"\nx=1\n", "[S]\nkey=new\nx=1\n"},
        {"empty value filled", "[S]\r\nkey=\r\n", "[S]\r\nkey=new\r\n"},
        {"the first of equal keys", "[S]\nkey=1\nkey=2\n", "[S]\nkey=new\nkey=2\n"},
        {"last line without an end", "[S]\nkey=old", "[S]\nkey=new"},
        {"an equal value stays as it is written", "[S]\nkey = \"new\" \n", "[S]\nkey = \"new\" \n"},
        {"other encodings stay", "; \xE9 \xC3\xA9\n[S]\na=\xE9\nkey=old\n",
         "; \xE9 \xC3\xA9\n[S]\na=\xE9\nkey=new\n"},
        {"new key behind the last key", "[S]\na=1\n\n; of T\n[T]\r\nb=2\r\n",
         "[S]\na=1\nkey=new\n\n; of T\n[T]\r\nb=2\r\n"},
        {"new key in an empty section", "[S]\r\n[T]\n", "[S]\r\nkey=new\r\n[T]\n"},
        {"line end of the neighbour", "[T]\r\n[S]\na=1\n\r\n", "[T]\r\n[S]\na=1\nkey=new\n\r\n"},
        {"missing last line end stays missing", "[S]\na=1", "[S]\na=1\nkey=new"},
        {"a single line", "[S]", "[S]\r\nkey=new"},
        {"new section", "[T]\na=1\n", "[T]\na=1\n[S]\nkey=new\n"},
        {"new section behind an unended line", "[T]\na=1", "[T]\na=1\n[S]\nkey=new"},
        {"empty file", "", "[S]\r\nkey=new\r\n"},
        {"byte-order mark alone", "\xEF\xBB\xBF", "\xEF\xBB\xBF[S]\r\nkey=new\r\n"},
        {"UTF-16 is left alone", "\xFF\xFE[", "\xFF\xFE["},
    };
    for (const auto& [name, before, after] : cases)
        EXPECT_EQ(With(before, "key", "new"), after) << name;
}

TEST(ProfileText, WritesAValueAsOneLineOfTheCodePageThatReadsBackAlike)
{
    const struct {
        const char* value;
        const char* bytes;
    } cases[] = {
        {"caf\u00E9 \u20AC", "caf\xE9 \x80"}, {"\u0416", "\xD0\x96"},  // 1252 has no such character
        {"\u00C3\u00A9", "\xC3\x83\xC2\xA9"},  // the bytes of 1252 would pass for UTF-8
        {"a\r\nb\rc\n\nd", "a b c  d"},       {"\n", "\" \""},        {"a\xE9z", "a\uFFFDz"},
    };
    for (const auto& [value, bytes] : cases)
        EXPECT_EQ(With("", "k", value), "[S]\r\nk=" + std::string(bytes) + "\r\n");
}

/// Texts of characters that blanks, quotes, comments, sections and the two encodings make awkward.
std::string AwkwardText(std::mt19937& random)
{
    constexpr std::array<char32_t, 22> kAwkward = {' ', '\t', '"',    '\'',   ';',    '#',    '[',  ']',
                                                   '=', 'a',  '\\',   0,      0x1A,   0x81,   0xA9, 0xC3,
                                                   'A', 0xE9, 0x20AC, 0x0416, 0xFFFD, 0x1F600};
    std::uniform_int_distribution<std::size_t> length(0, 7);
    std::uniform_int_distribution<std::size_t> any(0, kAwkward.size() - 1);
    std::string text;
    for (std::size_t left = length(random); left > 0; --left)
        AppendCharacter(text, kAwkward[any(random)]);
    return text;
}

TEST(ProfileText, EveryValueReadsBackAsWrittenAndDisturbsNoOther)
{
    std::mt19937 random(20210514);
    std::string text = "\xEF\xBB\xBF; top\n[T]\nkey=t\n\n[S]\nfirst=1\n; end";
    for (int i = 0; i < 20000; ++i) {
        const std::string value = AwkwardText(random);
        const std::string other = AwkwardText(random);
        text = With(With(text, "key", value), "other", other);
        ASSERT_EQ(FindProfileValue(text, "S", "KEY", kLimit), value);
        ASSERT_EQ(FindProfileValue(text, "S", "other", kLimit), other);
    }
    EXPECT_TRUE(text.starts_with("\xEF\xBB\xBF; top\n[T]\nkey=t\n\n[S]\nfirst=1\n"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 8);
    EXPECT_TRUE(text.ends_with("\n; end"));
}

}  // namespace
}  // namespace platform::files
