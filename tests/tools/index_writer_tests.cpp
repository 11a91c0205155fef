#include "make_database/index_writer.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/jet/index_page.h"

namespace {

using namespace tools;
namespace jet = platform::jet;

/// An index of Jet 4 in memory, its pages taken apart by the program's own reader.
class Index {
public:
    explicit Index(const std::vector<std::uint64_t>& entries)
    {
        PageOutput output(store_, kJet4Layout);
        output.Allocate();  // page 0 is never an index page
        root_ = WriteIndex(output, 3, entries).root;
    }

    [[nodiscard]] std::uint32_t Root() const { return root_; }

    [[nodiscard]] bool IsNode(std::uint32_t page) const
    {
        return Page(page).U8(0) == static_cast<std::uint8_t>(PageType::kIndexNode);
    }

    [[nodiscard]] std::vector<std::string> Entries(std::uint32_t number) const
    {
        const jet::IndexPage page(Page(number), jet::kJet4Layout);
        std::vector<std::string> entries(page.EntryCount());
        for (std::size_t i = 0; i < entries.size(); ++i)
            page.GetEntry(i, entries[i]);
        return entries;
    }

private:
    [[nodiscard]] jet::ByteView Page(std::uint32_t number) const
    {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(store_.Content().data());
        return jet::ByteView({bytes + number * kJet4Layout.pageSize, kJet4Layout.pageSize});
    }

    MemoryPages store_;
    std::uint32_t root_;
};

// The order of the leaves is up to the tests of the program's own reader, which never looks at these keys.
TEST(IndexWriter, EveryEntryOfANodeEndsThePageThatItNames)
{
    const struct {
        std::int32_t count;
        std::int32_t step;
        int height;
    } cases[] = {
        {0, 1, 0},     {1, 1, 0},       {602, 1, 0},  // 9 bytes, then 6 behind a prefix of 3: 3615 of 3616
        {603, 1, 1},   {300'000, 1, 2}, {5'000, 400'000, 1},  // keys that share little
        {5'000, 0, 1},                                        // keys that share all
    };
    for (const auto& [count, step, height] : cases) {
        SCOPED_TRACE(count);
        std::vector<std::uint64_t> entries;
        for (std::int32_t i = 0; i < count; ++i)
            entries.push_back(IndexEntry(
                -1000 + i * step, {static_cast<std::uint32_t>(i / 100), static_cast<std::uint8_t>(i % 100)}));
        const Index index(entries);
        std::uint32_t page = index.Root();
        int found = 0;
        for (; index.IsNode(page); ++found) {
            for (const std::string& entry : index.Entries(page))
                EXPECT_EQ(entry.substr(0, 9), index.Entries(jet::PageBelow(entry)).back().substr(0, 9));
            page = jet::PageBelow(index.Entries(page).front());
        }
        EXPECT_EQ(found, height);
    }
}

}  // namespace
