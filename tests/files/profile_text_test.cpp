#include "platform/files/profile_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

#include "platform/ansi_code_page.h"

namespace platform::files {
namespace {

using namespace std::string_literals;

constexpr std::size_t kLimit = 255;

std::string Find(const std::string& bytes, std::string_view section, std::string_view key,
                 std::size_t limit = kLimit)
{
    return FindProfileValue(ProfileContent(bytes), section, key, limit);
}

std::string With(const std::string& bytes, const std::string& key, const std::string& value)
{
    ProfileContent content(bytes);
    SetProfileEntry(content, {"S", key, value});
    return content.Bytes();
}

/// A text as a file holds it that begins with this byte-order mark.
std::string Encoded(const std::string& ascii, const std::string& mark)
{
    if (mark != "\xFF\xFE" && mark != "\xFE\xFF")
        return ascii;
    std::string bytes;
    for (const char character : ascii)
        bytes += mark == "\xFE\xFF" ? std::string{'\0', character} : std::string{character, '\0'};
    return bytes;
}

TEST(ProfileText, FindsAValueAsPeopleWriteIt)
{
    const std::pair<const char*, const char*> cases[] = {
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
        EXPECT_EQ(Find(text, "TCP/IP Settings", "Port"), value) << text;
}

TEST(ProfileText, ChangesNoByteButTheValue)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
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
    };
    for (const auto& [name, before, after] : cases)
        EXPECT_EQ(With(before, "key", "new"), after) << name;
}

TEST(ProfileText, WritesAValueInTheEncodingOfTheFile)
{
    const std::string ansi = "k=caf\xE9";
    const std::string utf8 = "k=caf\xC3\xA9";
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"ASCII", "; x\n[S]\nk=old", "; x\n[S]\n" + ansi},
        {"byte-order mark", "\xEF\xBB\xBF[S]\nk=old", "\xEF\xBB\xBF[S]\n" + utf8},
        {"a comment in UTF-8", "; \xC3\xA9\n[S]\nk=old", "; \xC3\xA9\n[S]\n" + utf8},
        {"the old value in UTF-8", "[S]\nk=\xC3\xA9t\xC3\xA9", "[S]\n" + utf8},
        {"a comment in 1252", "; \xE9\n[S]\nk=old", "; \xE9\n[S]\n" + ansi},
        {"the old value in 1252", "[S]\nk=\xE9t\xE9", "[S]\n" + ansi},
        {"both, line by line", "; \xE9\n; \xC3\xA9\n[S]\nk=old", "; \xE9\n; \xC3\xA9\n[S]\n" + utf8},
        {"a zero is no sign of UTF-8", "; \0\n[S]\nk=old"s, "; \0\n[S]\n"s + ansi},
        {"a new key", "; \xC3\xA9\n[S]\n", "; \xC3\xA9\n[S]\n" + utf8 + "\n"},
        {"a new section", "; \xC3\xA9\n", "; \xC3\xA9\n[S]\n" + utf8 + "\n"},
    };
    for (const auto& [name, before, after] : cases)
        EXPECT_EQ(With(before, "k", "caf\u00E9"), after) << name;
}

TEST(ProfileText, ReadsAndWritesUtf16)
{
    const std::string value = "\u0416\U0001F600";
    for (const std::string mark : {"\xFF\xFE", "\xFE\xFF"}) {
        const bool isBigEndian = mark == "\xFE\xFF";
        const std::string stored = isBigEndian ? "\x04\x16\xD8\x3D\xDE\x00"s : "\x16\x04\x3D\xD8\x00\xDE"s;
        const std::string loneHalf = isBigEndian ? "\xDE\x00"s : "\x00\xDE"s;
        const std::string top = mark + loneHalf + Encoded("\r\n[S]\r\n", mark);
        const std::string key = Encoded("k=", mark);
        const std::string end = Encoded("\r\n; end", mark) + loneHalf + "x";
        EXPECT_EQ(Find(top + key + stored + end, "S", "k"), value);
        EXPECT_EQ(With(top + Encoded("k=old", mark) + end, "k", value), top + key + stored + end);
        EXPECT_EQ(With(top + Encoded("a=1", mark) + end, "k", "new"),
                  top + Encoded("a=1\r\nk=new", mark) + end);
    }
}

TEST(ProfileText, WritesAValueAsOneLineOfTheCodePageThatReadsBackAlike)
{
    const std::pair<const char*, const char*> cases[] = {
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
    for (const std::string mark : {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        const std::string begin = mark + Encoded("; top\n[T]\nkey=t\n\n[S]\nfirst=1\n", mark);
        const std::string end = Encoded("\n; end", mark);
        std::mt19937 random(20210514);
        std::string file = begin + end;
        for (int i = 0; i < 5000; ++i) {
            const std::string value = AwkwardText(random);
            const std::string other = AwkwardText(random);
            file = With(With(file, "key", value), "other", other);
            ASSERT_EQ(Find(file, "S", "KEY"), value);
            ASSERT_EQ(Find(file, "S", "other"), other);
        }
        EXPECT_TRUE(file.starts_with(begin + Encoded("key=", mark)));
        EXPECT_TRUE(file.ends_with(end));
        EXPECT_EQ(std::ranges::count(file, '\n'), 9);
    }
}

}  // namespace
}  // namespace platform::files
