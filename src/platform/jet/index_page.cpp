#include "platform/jet/index_page.h"

#include <bit>

/// Index page
///
///   OFFSET 3|4    SIZE       DESCRIPTION
///   0|0           1          3: a node, it leads to lower pages; 4: a leaf, it leads to rows
///   4|4           4          page of the table's definition
///   8|12          4          page to the left; 0: none
///   12|16         4          page to the right; 0: none
///   20|24         1|2        how many bytes all entries share with the first. In Jet 3 the next byte is the
///                            level already: read as two bytes they make nonsense of each page above leaves.
///   21|26         1          level: 0 in leaves
///   0x16|0x1B     226|453    bitmap: a bit for each byte of the entries' area, set where an entry has ended
///   0xF8|0x1E0    n          entries
///
/// An entry is the key's columns, each as bytes that compare as its values do, then its row: page (3 bytes)
/// and row (1 byte); in a node, the page below in 4 bytes more. These have their most significant byte first.
/// An entry of a node is the last one of the page below it. The last leaf may be in no node yet, so that
/// leaves are followed from left to right.
///
/// All entries but the first leave out the shared bytes, which may reach into page and row.
namespace platform::jet {
namespace {

constexpr std::size_t kTrailerSize = 4;

/// The last four bytes as a number, most significant first.
std::uint32_t Trailer(const std::string& entry)
{
    if (entry.size() < kTrailerSize)
        throw Damage("an index entry is too short");
    std::uint32_t number = 0;
    for (std::size_t i = entry.size() - kTrailerSize; i < entry.size(); ++i)
        number = number << 8 | static_cast<std::uint8_t>(entry[i]);
    return number;
}

/// The mask has a bit for each byte of the entries' area, set where an entry ends.
std::vector<std::size_t> EntryEnds(ByteView mask, std::size_t areaSize)
{
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < mask.Size(); ++i)
        for (std::uint8_t bits = mask.U8(i); bits != 0; bits = static_cast<std::uint8_t>(bits & (bits - 1)))
            ends.push_back(i * 8 + static_cast<std::size_t>(std::countr_zero(bits)));
    if (!ends.empty() && (ends.front() == 0 || ends.back() > areaSize))
        throw Damage("an index entry reaches past its page");
    return ends;
}

/// In Jet 3 the byte behind it is the page's level, which is no part of it.
std::size_t PrefixLength(ByteView page, const Layout::IndexPage& place)
{
    return place.prefixLengthSize == 1 ? page.U8(place.prefixLength) : page.U16(place.prefixLength);
}

}  // namespace

IndexPage::IndexPage(ByteView page, const Layout& layout)
    : page_(page),
      layout_(layout),
      entries_(page.From(layout.indexPage.entries)),
      ends_(EntryEnds(
          page.Slice(layout.indexPage.entryMask, layout.indexPage.entries - layout.indexPage.entryMask),
          entries_.Size()))
{
    if (!ends_.empty())
        shared_ = entries_.Slice(0, ends_.front()).Slice(0, PrefixLength(page, layout.indexPage));
}

void IndexPage::GetEntry(std::size_t number, std::string& entry) const
{
    const std::size_t begin = number == 0 ? 0 : ends_[number - 1];
    entry = number == 0 ? std::string_view{} : shared_.AsText();
    entry += entries_.Slice(begin, ends_[number] - begin).AsText();
}

std::uint32_t IndexPage::NextPage() const
{
    return page_.U32(layout_.indexPage.next);
}

RowPosition PositionIn(const std::string& leafEntry)
{
    return {Trailer(leafEntry)};
}

std::uint32_t PageBelow(const std::string& nodeEntry)
{
    return Trailer(nodeEntry);
}

}  // namespace platform::jet
