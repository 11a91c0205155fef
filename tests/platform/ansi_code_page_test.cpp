#include "platform/ansi_code_page.h"

#include <gtest/gtest.h>

#include "support/texts.h"

namespace {

using platform::FromAnsi;
using platform::ToAnsi;

TEST(AnsiCodePage, EveryByteHasACharacterOfItsOwnAndComesBack)
{
    EXPECT_EQ(ToAnsi(FromAnsi(EveryByte())), EveryByte());
}

TEST(AnsiCodePage, KnowsTheCharactersOutsideLatin1)
{
    EXPECT_EQ(
        ToAnsi("€ ‚ƒ„…†‡ˆ‰Š‹Œ Ž ‘’“”•–—˜™š›œ žŸ é"),
        "\x80 \x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C \x8E \x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B"
        "\x9C \x9E\x9F \xE9");
}

TEST(AnsiCodePage, WritesAQuestionMarkForEachCharacterThatItLacks)
{
    EXPECT_EQ(ToAnsi("aΩ日\U0001F600b\u0080"), "a???b?");
}

TEST(Utf8, TakesOneCharacterForEachByteThatIsNotValid)
{
    constexpr char32_t bad = 0xFFFD;
    const std::pair<std::string, std::vector<char32_t>> cases[] = {{"é\U0001F600z", {0xE9, 0x1F600, 'z'}},
                                                                   {"\xE9t", {bad, 't'}},
                                                                   {"\xE2\x82", {bad, bad}},
                                                                   {"\xC0\x80", {bad, bad}},
                                                                   {"\xED\xA0\x80", {bad, bad, bad}},
                                                                   {"\xF4\x90\x80\x80", {bad, bad, bad, bad}},
                                                                   {"\xE0\x80\xAF", {bad, bad, bad}},
                                                                   {std::string("\0a", 2), {0, 'a'}}};
    for (const auto& [text, expected] : cases) {
        std::vector<char32_t> characters;
        for (std::string_view rest = text; !rest.empty();)
            characters.push_back(platform::TakeCharacter(rest));
        EXPECT_EQ(characters, expected) << text;
    }
}

TEST(Utf8, IsToldFromOtherBytes)
{
    EXPECT_TRUE(platform::IsUtf8("caf\u00E9 \uFFFD"));
    EXPECT_FALSE(platform::IsUtf8("caf\xE9"));
    EXPECT_FALSE(platform::IsUtf8("\xEF\xBF"));
}

TEST(Utf8, EveryCharacterReadsBackAsWritten)
{
    for (const char32_t character :
         {0x0U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xD7FFU, 0xE000U, 0xFFFFU, 0x10000U, 0x10FFFFU}) {
        std::string text;
        platform::AppendCharacter(text, character);
        std::string_view rest = text;
        EXPECT_EQ(platform::TakeCharacter(rest), character);
        EXPECT_TRUE(rest.empty()) << std::hex << static_cast<std::uint32_t>(character);
    }
}

}  // namespace
