#include "platform/jet/data_page.h"

#include <gtest/gtest.h>

#include "jet/memory_source.h"
#include "make_database/database_writer.h"

namespace platform::jet {
namespace {

TEST(DataPage, LeadsToARowThatMovedMoreThanOnce)
{
    constexpr std::uint32_t kOwner = 9;
    const std::size_t pageSize = kJet4Layout.pageSize;
    for (const bool circle : {false, true}) {
        tools::DataPage page(tools::kJet4Layout, kOwner);
        page.Add(tools::NumberBytes(PositionOf(1, 1).packed));
        page.Add(tools::NumberBytes(PositionOf(1, circle ? 0 : 2).packed));
        page.Add("the row");
        std::string bytes = tools::DatabaseBytes({}).substr(0, pageSize) + page.Content();
        for (std::size_t row = 0; const int flag : {0x40, 0x40, 0x80})
            bytes[pageSize + kJet4Layout.data.rowOffsets + 2 * row++ + 1] |= static_cast<char>(flag);
        const PageFile file(std::make_unique<MemorySource>(bytes, 100), "memory");
        if (circle)
            EXPECT_THROW((void)FetchRow(file, PositionOf(1, 0), kOwner), Damage);
        else
            EXPECT_EQ(FetchRow(file, PositionOf(1, 0), kOwner).bytes.AsText(), "the row");
    }
}

}  // namespace
}  // namespace platform::jet
