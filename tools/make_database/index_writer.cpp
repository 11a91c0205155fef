#include "make_database/index_writer.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace tools {
namespace {

constexpr std::uint32_t kSignBit = 0x80000000;
constexpr std::uint8_t kNotNull = 0x7F;

/// What one entry of a level stands for: in a node, `child` is the page that ends with this entry.
struct Item {
    std::uint64_t entry;
    std::optional<std::uint32_t> child;
};

struct Level {
    std::uint8_t number;  // 0: the leaves
    std::size_t size;
    std::function<Item(std::size_t)> item;
};

Bytes EncodeItem(const Item& item)
{
    Bytes bytes = NumberBytes(kNotNull);
    AppendBigEndian(bytes, item.entry);
    if (item.child)
        AppendBigEndian(bytes, *item.child);
    return bytes;
}

/// Number of leading bytes that ascending entries between these two share.
std::size_t CommonPrefix(const Bytes& first, const Bytes& last)
{
    return static_cast<std::size_t>(std::ranges::mismatch(first, last).in1 - first.begin());
}

/// Whether a page has room for one more entry behind those that it has.
bool Fits(const Layout& layout, const std::vector<Bytes>& entries, const Bytes& entry)
{
    if (entries.empty())
        return true;
    const std::size_t shortened = entry.size() - CommonPrefix(entries.front(), entry);
    return entry.size() + entries.size() * shortened <= layout.pageSize - layout.entriesOffset;
}

struct Neighbours {
    std::uint32_t previous;
    std::uint32_t next;
};

Bytes BuildPage(const Layout& layout, std::uint8_t level, std::uint32_t definitionPage,
                const std::vector<Bytes>& entries, Neighbours neighbours)
{
    const std::size_t prefix = entries.size() < 2 ? 0 : CommonPrefix(entries.front(), entries.back());
    Bytes page = NewPage(layout, level == 0 ? PageType::kIndexLeaf : PageType::kIndexNode);
    std::size_t end = layout.entriesOffset;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string_view stored = std::string_view(entries[i]).substr(i == 0 ? 0 : prefix);
        page.replace(end, stored.size(), stored);
        end += stored.size();
        SetBit(page, layout.entryMaskOffset, end - layout.entriesOffset);
    }
    Store(page, kFreeSpaceOffset, static_cast<std::uint16_t>(layout.pageSize - end));
    Store(page, kOwnerOffset, definitionPage);
    Store(page, layout.previousPageOffset, neighbours.previous);
    Store(page, layout.previousPageOffset + sizeof neighbours.previous, neighbours.next);
    // Entries of this index have 13 bytes at most, so that one byte of the length tells all in both formats.
    Store(page, layout.prefixLengthOffset, static_cast<std::uint8_t>(prefix));
    Store(page, layout.levelOffset, level);
    return page;
}

/// Writes the pages of one level and returns an item for each, to stand in the level above.
std::vector<Item> WriteLevel(PageOutput& output, std::uint32_t definitionPage, const Level& level,
                             std::vector<std::uint32_t>& pages)
{
    std::vector<Item> above;
    std::vector<Bytes> entries;
    std::uint32_t number = output.Allocate();
    std::uint32_t previous = 0;
    const auto writePage = [&](std::uint32_t next) {
        output.Write(number,
                     BuildPage(output.FileLayout(), level.number, definitionPage, entries, {previous, next}));
        pages.push_back(number);
    };
    for (std::size_t i = 0; i < level.size; ++i) {
        Bytes entry = EncodeItem(level.item(i));
        if (!Fits(output.FileLayout(), entries, entry)) {
            const std::uint32_t next = output.Allocate();
            writePage(next);
            above.push_back({level.item(i - 1).entry, number});
            previous = number;
            number = next;
            entries.clear();
        }
        entries.push_back(std::move(entry));
    }
    writePage(0);
    above.push_back({level.size == 0 ? 0 : level.item(level.size - 1).entry, number});
    return above;
}

}  // namespace

std::uint64_t IndexEntry(std::int32_t key, RowPointer row)
{
    return std::uint64_t{static_cast<std::uint32_t>(key) ^ kSignBit} << 32 | row.AsNumber();
}

std::int32_t IndexKey(std::uint64_t entry)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(entry >> 32) ^ kSignBit);
}

IndexPages WriteIndex(PageOutput& output, std::uint32_t definitionPage,
                      const std::vector<std::uint64_t>& entries)
{
    IndexPages index{};
    const auto leafItem = [&](std::size_t i) { return Item{entries[i], std::nullopt}; };
    auto items = WriteLevel(output, definitionPage, {0, entries.size(), leafItem}, index.pages);
    for (std::uint8_t level = 1; items.size() > 1; ++level) {
        const auto nodeItem = [&](std::size_t i) { return items[i]; };
        items = WriteLevel(output, definitionPage, {level, items.size(), nodeItem}, index.pages);
    }
    index.root = *items.front().child;
    return index;
}

}  // namespace tools
