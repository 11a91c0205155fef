#pragma once

#include <cstddef>
#include <cstdint>

namespace tools {

/// The two file formats: Jet 3 (Access 97) and Jet 4 (Access 2000 to 2003).
enum class Format { kJet3, kJet4 };

/// Sizes and places that differ between the formats. Source: files written by Access 97 and Access 2000, and
/// the format notes that come with mdbtools.
struct Layout {
    Format format;
    std::size_t pageSize;

    /// Data page: the place of the u16 number of rows; the u16 offset of each row follows it.
    std::size_t rowCountOffset;

    /// Longest row that a page of long values takes, and the longest usage map.
    std::size_t longValueRow;
    std::size_t usageMapSize;

    /// Index page: the place of the previous page's number (the next page's follows), of the u16 prefix
    /// length, of the bit mask of entry ends, and of the entries themselves.
    std::size_t previousPageOffset;
    std::size_t prefixLengthOffset;
    std::size_t entryMaskOffset;
    std::size_t entriesOffset;

    [[nodiscard]] bool IsJet4() const { return format == Format::kJet4; }
};

inline constexpr Layout kJet3Layout = {Format::kJet3, 2048, 8, 2032, 133, 8, 20, 0x16, 0xF8};
inline constexpr Layout kJet4Layout = {Format::kJet4, 4096, 12, 4076, 69, 12, 24, 0x1B, 0x1E0};

[[nodiscard]] inline const Layout& LayoutOf(Format format)
{
    return format == Format::kJet4 ? kJet4Layout : kJet3Layout;
}

/// First byte of every page after the header; the second byte is 1.
enum class PageType : std::uint8_t {
    kData = 1,
    kTableDefinition = 2,
    kIndexNode = 3,
    kIndexLeaf = 4,
    kUsageBitmap = 5
};

}  // namespace tools
