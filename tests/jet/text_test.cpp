#include "platform/jet/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace platform::jet {
namespace {

using namespace std::string_literals;

ByteView ViewOf(const std::string& bytes)
{
    return ByteView{{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}};
}

TEST(Text, IsDecodedAsItsFormatStoresIt)
{
    const std::tuple<const char*, Format, std::string, std::string> cases[] = {
        {"plain", Format::kJet4, "a\0\xAC\x20"s, "a€"},
        {"plain with U+0000", Format::kJet4, "a\0\0\0b\0"s, "a\0b"s},
        {"a surrogate pair", Format::kJet4, "\x3D\xD8\x00\xDE"s, "😀"},
        {"halves of surrogate pairs", Format::kJet4, "\x3D\xD8\x41\x00\x00\xDE\x3D\xD8"s,
         "\uFFFDA\uFFFD\uFFFD"},
        {"compressed", Format::kJet4, "\xFF\xFE"s + "caf\xE9\r\n", "café\r\n"},
        {"nothing after the mark", Format::kJet4, "\xFF\xFE"s, ""},
        {"to UTF-16 and back", Format::kJet4, "\xFF\xFE"s + "1\0\xAC\x20\x3D\xD8\x01\xDE\0"s + "2\xFC",
         "1€😁2ü"},
        {"UTF-16 at once", Format::kJet4, "\xFF\xFE\0\x1C\x20"s, "\u201C"},
        {"code page", Format::kJet3, "ab\x80\x93\xFF", "ab€\u201Cÿ"},
        {"no mark in a code page", Format::kJet3, "\xFF\xFE\0z"s, "ÿþ\0z"s},
    };
    for (const auto& [name, format, bytes, text] : cases) {
        EXPECT_EQ(DecodeText(ViewOf(bytes), format), text) << name;
        EXPECT_EQ(DecodeTextBeginning(ViewOf(bytes), format, 255), text) << name;
    }
    EXPECT_THROW((void)DecodeText(ViewOf("a\0b"s), Format::kJet4), Damage);
    EXPECT_THROW((void)DecodeText(ViewOf("\xFF\xFE"s + "a\0\xAC"s), Format::kJet4), Damage);
}

TEST(Text, IsDecodedUpToALimit)
{
    const std::tuple<const char*, Format, std::string, std::size_t, std::string> cases[] = {
        {"code page", Format::kJet3, "ab\x80z", 3, "ab€"},
        {"UTF-16", Format::kJet4, "a\0\xAC\x20z\0"s, 2, "a€"},
        {"half a unit", Format::kJet4, "a\0\xAC"s, 255, "a"},
        {"compressed, up to a wide one", Format::kJet4, "\xFF\xFE"s + "1\0\xAC\x20z\0"s, 2, "1€"},
        {"compressed, half a wide one", Format::kJet4, "\xFF\xFE"s + "1\0\xAC", 255, "1"},
        {"nothing but switches", Format::kJet4, "\xFF\xFE"s + std::string(1'000, '\0'), 255, ""},
    };
    for (const auto& [name, format, bytes, characters, text] : cases)
        EXPECT_EQ(DecodeTextBeginning(ViewOf(bytes), format, characters), text) << name;
}

/// Texts in the order of one of the formats.
void ExpectAscending(const std::vector<std::string>& texts, Format format)
{
    for (std::size_t i = 1; i < texts.size(); ++i)
        EXPECT_LT(TextSortKey(texts[i - 1], format), TextSortKey(texts[i], format))
            << texts[i - 1] << " before " << texts[i];
}

TEST(TextSortKey, OrdersTextsAsPeopleDo)
{
    const std::vector<std::string> ascending = {
        "",     "-",     " ", "!",   "_x", "~",        "+",   "<",  "€", "02", "1",    "10",
        "9",    "a",     "ä", "a b", "aa", "ab",       "a-b", "ae", "B", "ba", "Coop", "co-op",
        "côop", "COOP2", "o", "œ",   "op", "Strasse2", "z",   "Ž",  "α", "Ж",  "漢"};
    ExpectAscending(ascending, Format::kJet4);
}

TEST(TextSortKey, WeighsHyphensAndApostrophesInJet3Alone)
{
    ExpectAscending({"a b", "a-b", "a/b", "aa", "B's Beverages", "Berglunds", "co-op", "coop"},
                    Format::kJet3);
    ExpectAscending({"a b", "a/b", "aa", "a-b", "Berglunds", "B's Beverages", "coop", "co-op"},
                    Format::kJet4);
}

TEST(TextSortKey, CountsBlanksAtTheEnd)
{
    for (const Format format : {Format::kJet3, Format::kJet4})
        ExpectAscending({"a", "a ", "a  ", "a b", "aa"}, format);
}

TEST(TextSortKey, TakesCaseControlCharactersAndSpellingsOfOneLetterForEqual)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a", "A"}, {"é", "É"}, {"ß", "ss"},    {"Æ", "ae"},      {"Ω", "ω"},
        {"я", "Я"}, {"Ё", "ё"}, {"a\tb", "ab"}, {"ab\r\n", "ab"}, {"\nab", "ab"}};
    for (const Format format : {Format::kJet3, Format::kJet4})
        for (const auto& [one, other] : cases)
            EXPECT_EQ(TextSortKey(one, format), TextSortKey(other, format)) << one << " and " << other;
}

}  // namespace
}  // namespace platform::jet
