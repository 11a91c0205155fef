#include "make_database/index_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

using namespace tools;

constexpr std::uint32_t kDefinitionPage = 3;

std::uint64_t Number(const Bytes& bytes, std::size_t offset, std::size_t size, bool bigEndian)
{
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i)
        number |= std::uint64_t{static_cast<std::uint8_t>(bytes[offset + i])}
                  << 8 * (bigEndian ? size - 1 - i : i);
    return number;
}

/// An index in memory, read back the way readers do.
struct Index {
    Index(const Layout& indexLayout, const std::vector<std::uint64_t>& entries) : layout(indexLayout)
    {
        PageOutput output(store, layout);
        output.Allocate();  // page 0 is never an index page
        index = WriteIndex(output, kDefinitionPage, entries);
    }

    [[nodiscard]] Bytes Page(std::uint64_t number) const
    {
        return store.Content().substr(number * layout.pageSize, layout.pageSize);
    }

    /// The entries of a page, the shared prefix put back.
    [[nodiscard]] std::vector<Bytes> Entries(const Bytes& page) const
    {
        const std::size_t prefix = Number(page, layout.prefixLengthOffset, 2, false);
        std::vector<Bytes> entries;
        std::size_t begin = 0;
        for (std::size_t end = 1; end <= layout.pageSize - layout.entriesOffset; ++end) {
            if ((page[layout.entryMaskOffset + end / 8] >> end % 8 & 1) == 0)
                continue;
            const Bytes shared = entries.empty() ? Bytes() : entries.front().substr(0, prefix);
            entries.push_back(shared + page.substr(layout.entriesOffset + begin, end - begin));
            begin = end;
        }
        return entries;
    }

    const Layout& layout;
    MemoryPages store;
    IndexPages index;
};

/// Number of levels above the leaves. Every node entry must end the page that it names.
int CheckedHeight(const Index& read, std::uint64_t& page)
{
    int height = 0;
    while (read.Page(page)[0] == static_cast<char>(PageType::kIndexNode)) {
        const auto entries = read.Entries(read.Page(page));
        for (const Bytes& entry : entries) {
            EXPECT_EQ(entry.size(), 13U);
            const Bytes last = read.Entries(read.Page(Number(entry, 9, 4, true))).back();
            EXPECT_EQ(entry.substr(0, 9), last.substr(0, 9));
        }
        page = Number(entries.front(), 9, 4, true);
        ++height;
    }
    return height;
}

/// All entries in the order of the linked leaves, from the first one on.
std::vector<std::uint64_t> LeafEntries(const Index& read, std::uint64_t leaf)
{
    std::vector<std::uint64_t> all;
    for (std::uint64_t previous = 0; leaf != 0;) {
        const Bytes page = read.Page(leaf);
        EXPECT_EQ(page[0], static_cast<char>(PageType::kIndexLeaf));
        EXPECT_EQ(Number(page, 4, 4, false), kDefinitionPage);
        EXPECT_EQ(Number(page, read.layout.previousPageOffset, 4, false), previous);
        for (const Bytes& entry : read.Entries(page)) {
            EXPECT_EQ(entry.size(), 9U);
            EXPECT_EQ(entry[0], 0x7F);
            all.push_back(Number(entry, 1, 8, true));
        }
        previous = leaf;
        leaf = Number(page, read.layout.previousPageOffset + 4, 4, false);
    }
    return all;
}

std::vector<std::uint64_t> EntriesFrom(std::int32_t first, std::size_t count, std::int32_t step)
{
    std::vector<std::uint64_t> entries;
    std::int32_t key = first;
    for (std::size_t i = 0; i < count; ++i) {
        entries.push_back(
            IndexEntry(key, {static_cast<std::uint32_t>(i / 100), static_cast<std::uint8_t>(i % 100)}));
        key += step;
    }
    return entries;
}

TEST(IndexEntry, OrdersByKeyThenPageThenRow)
{
    const std::uint64_t ascending[] = {
        IndexEntry(std::numeric_limits<std::int32_t>::min(), {0xFFFFFF, 255}),
        IndexEntry(-1, {9, 9}),
        IndexEntry(0, {1, 5}),
        IndexEntry(0, {2, 1}),
        IndexEntry(0, {2, 3}),
        IndexEntry(std::numeric_limits<std::int32_t>::max(), {0, 0}),
    };
    EXPECT_TRUE(std::ranges::is_sorted(ascending));
    EXPECT_EQ(IndexKey(ascending[1]), -1);
    EXPECT_EQ(IndexKey(ascending[5]), std::numeric_limits<std::int32_t>::max());
}

TEST(IndexWriter, GivesBackItsEntriesInOrderAtEverySize)
{
    const struct {
        const Layout& layout;
        std::size_t count;
        std::int32_t step;
        int height;
    } cases[] = {
        {kJet4Layout, 0, 1, 0},           {kJet4Layout, 1, 1, 0},
        {kJet4Layout, 602, 1, 0},  // 9 bytes, then 6 each behind a prefix of 3: 3615 of 3616
        {kJet4Layout, 603, 1, 1},         {kJet4Layout, 300'000, 1, 2},
        {kJet4Layout, 5'000, 400'000, 1},  // keys that share little
        {kJet3Layout, 299, 1, 0},         {kJet3Layout, 300, 1, 1},
        {kJet3Layout, 60'000, 1, 2},
    };
    for (const auto& [layout, count, step, height] : cases) {
        SCOPED_TRACE(std::to_string(layout.pageSize) + " " + std::to_string(count));
        const auto entries = EntriesFrom(-1000, count, step);
        const Index read(layout, entries);
        std::uint64_t page = read.index.root;
        EXPECT_EQ(CheckedHeight(read, page), height);
        EXPECT_EQ(LeafEntries(read, page), entries);
        EXPECT_EQ(read.index.pages.size() * layout.pageSize + layout.pageSize, read.store.Content().size());
    }
}

}  // namespace
