#include "platform/jet/index_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace platform::jet {
namespace {

using namespace std::string_literals;

/// An index page of Jet 4 with these stored entries.
std::vector<std::uint8_t> MakePage(const std::vector<std::string>& stored, std::uint8_t sharedLength)
{
    const auto& place = kJet4Layout.indexPage;
    std::vector<std::uint8_t> page(kJet4Layout.pageSize);
    page[place.prefixLength] = sharedLength;
    std::size_t end = 0;
    for (const std::string& entry : stored) {
        std::ranges::copy(entry, page.begin() + static_cast<std::ptrdiff_t>(place.entries + end));
        end += entry.size();
        page[place.entryMask + end / 8] |= static_cast<std::uint8_t>(1U << end % 8);
    }
    return page;
}

TEST(IndexPage, GivesBackTheSharedBytesEvenOfThePosition)
{
    // Equal keys on one page: the rows' numbers alone differ, so three of the position's bytes are shared
    // too.
    const auto page = MakePage({"\x7F\x80\0\0\x05\0\x01\x02\x03"s, "\x04", "\x07"}, 8);
    const IndexPage index(ByteView(page), kJet4Layout);
    ASSERT_EQ(index.EntryCount(), 3U);
    std::string entry;
    for (const auto& [number, row] : {std::pair{0, 3}, {1, 4}, {2, 7}}) {
        index.GetEntry(static_cast<std::size_t>(number), entry);
        EXPECT_EQ(PositionIn(entry), PositionOf(0x000102, static_cast<std::uint8_t>(row)));
    }
}

TEST(IndexPage, ThatMakesNoSenseIsDamage)
{
    auto page = MakePage({"abcd"}, 9);
    EXPECT_THROW(IndexPage(ByteView(page), kJet4Layout), Damage) << "shares more than the first entry has";
    page = MakePage({"abc"}, 0);
    std::string entry;
    IndexPage(ByteView(page), kJet4Layout).GetEntry(0, entry);
    EXPECT_THROW((void)PositionIn(entry), Damage) << "too short for a position";
    page[kJet4Layout.indexPage.entries - 1] = 0x80;
    EXPECT_THROW(IndexPage(ByteView(page), kJet4Layout), Damage) << "reaches past the page";
}

}  // namespace
}  // namespace platform::jet
