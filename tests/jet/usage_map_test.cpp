#include "platform/jet/table_scan.h"

#include <gtest/gtest.h>

#include "jet/made_database.h"
#include "make_database/usage_map.h"

namespace platform::jet {
namespace {

/// A database of the largest size, of which only the first pages are there.
class LargeSource : public MemorySource {
public:
    explicit LargeSource(const std::string& firstPages) : MemorySource(firstPages, 100) {}
    [[nodiscard]] std::uint64_t Size() const override { return std::uint64_t{2} << 30; }
};

TEST(UsageMap, MarksThePagesThatWerePutIntoIt)
{
    for (const auto& layout : {tools::kJet3Layout, tools::kJet4Layout}) {
        const std::uint32_t reach = layout.IsJet4() ? 512 : 1024;  // of a map in its row
        const auto perBitmap = static_cast<std::uint32_t>(layout.pageSize - 4) * 8;
        for (const std::vector<std::uint32_t>& pages : {std::vector<std::uint32_t>{},
                                                        {70'000, 70'000 + reach - 1},
                                                        {70'000, 70'000 + reach},
                                                        {9, perBitmap - 1},
                                                        {9, perBitmap, perBitmap + 1},
                                                        {9, 5 * perBitmap + 8, 0x7FFFF}}) {
            tools::MemoryPages store;
            tools::PageOutput output(store, layout);
            output.Write(output.Allocate(),
                         tools::DatabaseBytes({}, {.format = layout.format, .password = ""})
                             .substr(0, layout.pageSize));
            tools::UsageMapPage maps(output, output.Allocate());
            const RowPosition map{maps.Add(pages).AsNumber()};
            maps.Write();
            const PageFile file(std::make_unique<LargeSource>(store.Content()), "memory");
            EXPECT_EQ(MarkedPages(file, map), pages);
        }
    }
}

}  // namespace
}  // namespace platform::jet
