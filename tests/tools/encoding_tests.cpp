#include <gtest/gtest.h>

#include <string>

#include "make_database/text_encoding.h"
#include "platform/failure.h"

namespace {

using namespace tools;
using namespace std::string_literals;

TEST(TextEncoding, CompressesWhereThatIsShorterAndReadable)
{
    const std::string mark = "\xFF\xFE";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"ab", "a\0b\0"s},  // no shorter with the mark in front
        {"abc", mark + "abc"},
        {"caf\u00E9s", mark + "caf\xE9s"},
        {"abc\u20ACghi", mark + "abc\0\xAC\x20\0ghi"s},
        {"abcd\u0100", "a\0b\0c\0d\0\0\x01"s},  // U+0100 has the switch as its low byte
        {"abcd\0"s, "a\0b\0c\0d\0\0\0"s},       // and so has U+0000
        {"\U0001F600", "\x3D\xD8\x00\xDE"s},
        {"\uFEFF", mark + "\0\xFF\xFE"s},  // U+FEFF would pass for the mark
    };
    for (const auto& [text, bytes] : cases)
        EXPECT_EQ(EncodeText(text, Format::kJet4, true), bytes) << text;
    EXPECT_EQ(EncodeText("abc", Format::kJet4, false), "a\0b\0c\0"s);
}

TEST(TextEncoding, RefusesWhatTheFormatCannotHold)
{
    EXPECT_EQ(EncodeText("\u20AC\u0081", Format::kJet3, true), "\x80\x81");
    EXPECT_THROW((void)EncodeText("\u0100", Format::kJet3, true), platform::Failure);
    EXPECT_THROW((void)EncodeText("\uFEFF\u0100", Format::kJet4, true), platform::Failure);
}

}  // namespace
