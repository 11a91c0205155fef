#include "platform/jet/index_page.h"

#include <gtest/gtest.h>

namespace platform::jet {
namespace {

TEST(IndexPage, ThatMakesNoSenseIsDamage)
{
    const auto& place = kJet4Layout.indexPage;
    std::vector<std::uint8_t> page(kJet4Layout.pageSize);
    page[place.entryMask] = 1 << 3;  // one entry, of three bytes
    std::string entry;
    IndexPage(ByteView(page), kJet4Layout).GetEntry(0, entry);
    EXPECT_THROW((void)PositionIn(entry), Damage) << "too short for a position";
    page[place.prefixLength] = 4;
    EXPECT_THROW(IndexPage(ByteView(page), kJet4Layout), Damage) << "shares more than the first entry has";
    page[place.prefixLength] = 0;
    page[place.entries - 1] = 0x80;
    EXPECT_THROW(IndexPage(ByteView(page), kJet4Layout), Damage) << "reaches past the page";
}

}  // namespace
}  // namespace platform::jet
