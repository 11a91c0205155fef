#pragma once

#include <cstddef>
#include <cstdint>

namespace tools {

/// The two file formats: Jet 3 (Access 97) and Jet 4 (Access 2000 to 2003).
enum class Format { kJet3, kJet4 };

/// Sizes and places that differ between the formats. The sources of all that is written here are listed in
/// src/platform/jet/layout.h; the tables there, beside the code that reads, were made from the same.
struct Layout {
    Format format;
    std::size_t pageSize;

    /// Data page: the place of the u16 number of rows; the u16 offset of each row follows it.
    std::size_t rowCountOffset;

    /// Longest row that a page of long values takes, and the longest usage map.
    std::size_t longValueRow;
    std::size_t usageMapSize;

    /// Index page: the place of the previous page's number (the next page's follows), of the prefix length
    /// (u8 in Jet 3, u16 in Jet 4), of the u8 level (0 in leaves), of the bit mask of entry ends, and of the
    /// entries themselves.
    std::size_t previousPageOffset;
    std::size_t prefixLengthOffset;
    std::size_t levelOffset;
    std::size_t entryMaskOffset;
    std::size_t entriesOffset;

    [[nodiscard]] bool IsJet4() const { return format == Format::kJet4; }
};

inline constexpr Layout kJet3Layout = {.format = Format::kJet3,
                                       .pageSize = 2048,
                                       .rowCountOffset = 8,
                                       .longValueRow = 2032,
                                       .usageMapSize = 133,
                                       .previousPageOffset = 8,
                                       .prefixLengthOffset = 20,
                                       .levelOffset = 21,
                                       .entryMaskOffset = 0x16,
                                       .entriesOffset = 0xF8};

inline constexpr Layout kJet4Layout = {.format = Format::kJet4,
                                       .pageSize = 4096,
                                       .rowCountOffset = 12,
                                       .longValueRow = 4076,
                                       .usageMapSize = 69,
                                       .previousPageOffset = 12,
                                       .prefixLengthOffset = 24,
                                       .levelOffset = 26,
                                       .entryMaskOffset = 0x1B,
                                       .entriesOffset = 0x1E0};

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

/// Head of a page, after its type: u16 number of bytes that are free, and on data and index pages the u32
/// page of the table's definition.
inline constexpr std::size_t kFreeSpaceOffset = 2;
inline constexpr std::size_t kOwnerOffset = 4;

/// The definition of the table of all tables stands on this page in every file.
inline constexpr std::uint32_t kCataloguePage = 2;

/// Sort order "General", and the code page of Jet 3 texts.
inline constexpr std::uint16_t kGeneralSortOrder = 0x0409;
inline constexpr std::uint16_t kCodePage1252 = 1252;

}  // namespace tools
