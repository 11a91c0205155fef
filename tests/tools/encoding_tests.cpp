#include <gtest/gtest.h>

#include <string>

#include "make_database/header.h"
#include "make_database/row_encoder.h"
#include "make_database/text_encoding.h"
#include "platform/failure.h"

namespace {

using namespace tools;
using namespace std::string_literals;

TEST(TextEncoding, CompressesWhereThatIsShorterAndReadable)
{
    const struct {
        std::string text;
        std::string bytes;
    } cases[] = {
        {"", ""},
        {"ab", "a\0b\0"s},  // no shorter with the mark in front
        {"abc",
         "\xFF\xFE"
         "abc"},
        {"caf\xC3\xA9s",
         "\xFF\xFE"
         "caf\xE9s"},
        {"abc\xE2\x82\xAC"
         "def",
         "\xFF\xFE"
         "abc\0\xAC\x20\0def"s},
        {"abcd\xC4\x80", "a\0b\0c\0d\0\0\x01"s},    // U+0100 has the switch as its low byte
        {"abcd\0"s, "a\0b\0c\0d\0\0\0"s},           // and so has U+0000
        {"\xF0\x9F\x98\x80", "\x3D\xD8\x00\xDE"s},  // beyond U+FFFF
        {"\xEF\xBB\xBF", "\xFF\xFE\0\xFF\xFE"s},    // U+FEFF would pass for the mark
    };
    for (const auto& [text, bytes] : cases)
        EXPECT_EQ(EncodeText(text, Format::kJet4, true), bytes) << text;
    EXPECT_EQ(EncodeText("abc", Format::kJet4, false), "a\0b\0c\0"s);
}

TEST(TextEncoding, RefusesWhatTheFormatCannotHold)
{
    EXPECT_EQ(EncodeText("\xE2\x82\xAC\xC2\x81", Format::kJet3, true), "\x80\x81");
    EXPECT_THROW((void)EncodeText("\xC4\x80", Format::kJet3, true), platform::Failure);
    EXPECT_THROW((void)EncodeText("\xEF\xBB\xBF\xC4\x80", Format::kJet4, true), platform::Failure);
}

/// A row of two columns as Access writes it: a number and a text of this length, null where it is -1.
Bytes RowOf(const Layout& layout, int textLength)
{
    const Column columns[] = {{"number", ColumnType::kInteger}, {"text", ColumnType::kMemo}};
    Cells cells = {NumberBytes(std::uint16_t{0x1234}), std::nullopt};
    if (textLength >= 0)
        cells[1] = Bytes(static_cast<std::size_t>(textLength), 't');
    return EncodeRow(layout, columns, cells);
}

TEST(RowEncoder, TellsNullFromEmpty)
{
    EXPECT_EQ(RowOf(kJet4Layout, -1), "\2\0\x34\x12\4\0\4\0\1\0\1"s);
    EXPECT_EQ(RowOf(kJet4Layout, 0), "\2\0\x34\x12\4\0\4\0\1\0\3"s);
    EXPECT_EQ(RowOf(kJet3Layout, -1), "\2\x34\x12\3\3\1\1"s);
    EXPECT_EQ(RowOf(kJet3Layout, 0), "\2\x34\x12\3\3\1\3"s);
}

/// Where the value ends, found as readers do: jumps in front of the number of variable columns add 256 each
/// from the column on that they name; the last is left out when the row is that long only because of it.
std::size_t EndOfValue(const Bytes& row)
{
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(row[i]); };
    const std::size_t count = row.size() - 2;
    std::size_t jumps = (row.size() - 1) / 256;
    const std::size_t offsets = count - jumps - 1;
    if ((offsets - byte(count)) / 256 < jumps)
        --jumps;
    std::size_t end = byte(offsets - 1);
    for (std::size_t i = 1; i <= jumps && byte(count - i) <= 1; ++i)
        end += 256;
    return end;
}

TEST(RowEncoder, ReachesBehindTheFirst256BytesOfAJet3Row)
{
    for (int length = 240; length < 1100; ++length)
        ASSERT_EQ(EndOfValue(RowOf(kJet3Layout, length)), 3U + static_cast<std::size_t>(length));
}

Bytes Xor(Bytes first, const Bytes& second)
{
    for (std::size_t i = 0; i < first.size(); ++i)
        first[i] = static_cast<char>(first[i] ^ second[i]);
    return first;
}

TEST(Header, HidesThePasswordUnderTheMaskAndTheCreationDate)
{
    constexpr double kCreated = 38059.75;
    const Bytes plain = BuildHeader(kJet4Layout, "", kCreated);
    EXPECT_EQ(plain.substr(0, 0x15), "\0\1\0\0Standard Jet DB\0\1"s);
    EXPECT_EQ(plain.substr(0x18, 8),
              "\xB5\x6F\x03\x62\x61\x08\xC2\x55");  // the mask itself: nothing is there

    const Bytes password = Xor(plain, BuildHeader(kJet4Layout, "4073\xE2\x82\xAC", kCreated));
    EXPECT_EQ(password.substr(0x42, 12),
              "4\0"
              "0\0"
              "7\0"
              "3\0"
              "\xAC\x20\0\0"s);
    EXPECT_EQ(password.find_last_not_of('\0'), 0x4BU);

    const Bytes dated = Xor(plain, BuildHeader(kJet4Layout, "", 0.0));
    EXPECT_EQ(dated.substr(0x42, 8), "\xAB\x94\0\0\xAB\x94\0\0"s);  // 38059

    const Bytes jet3 = Xor(BuildHeader(kJet3Layout, "", kCreated), BuildHeader(kJet3Layout, "4073", 0.0));
    EXPECT_EQ(jet3.substr(0x42, 6), "4073\0\0"s);
    EXPECT_EQ(jet3.find_last_not_of('\0'), 0x45U);
}

TEST(Header, TakesPasswordsOfUpToTwentyCharacters)
{
    for (const Layout& layout : {kJet3Layout, kJet4Layout}) {
        EXPECT_NO_THROW((void)BuildHeader(layout, std::string(20, 'p'), 0));
        EXPECT_THROW((void)BuildHeader(layout, std::string(21, 'p'), 0), platform::Failure);
    }
}

}  // namespace
