#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "make_database/bytes.h"
#include "make_database/layout.h"
#include "make_database/page_store.h"

namespace tools {

/// An empty page of a type.
[[nodiscard]] Bytes NewPage(const Layout& layout, PageType type);

/// Hands out page numbers and passes pages on to their store.
class PageOutput {
public:
    PageOutput(PageStore& store, const Layout& layout) : store_(store), layout_(layout) {}

    [[nodiscard]] const Layout& FileLayout() const { return layout_; }

    /// The next free page number. Failure: kOverflow past the size that the formats allow (2 GB in Jet 4, 1
    /// GB in Jet 3).
    std::uint32_t Allocate();

    void Write(std::uint32_t number, const Bytes& page) { store_.Write(number, page); }

private:
    PageStore& store_;
    const Layout& layout_;
    std::uint32_t next_ = 0;
};

/// Where a row stands. In the file it is a u32, the row in the lowest byte, the page above it.
struct RowPointer {
    std::uint32_t page;
    std::uint8_t row;

    [[nodiscard]] std::uint32_t AsNumber() const { return page << 8 | row; }
};

/// One data page in the making. Rows fill it from its end downwards, their offsets from its head upwards.
class DataPage {
public:
    /// `owner` is the page of the table's definition.
    DataPage(const Layout& layout, std::uint32_t owner);

    [[nodiscard]] bool Fits(const Bytes& row) const;

    /// Adds a row that fits; returns its number on the page.
    std::uint8_t Add(const Bytes& row);

    [[nodiscard]] const Bytes& Content() const { return content_; }

private:
    [[nodiscard]] std::size_t Free() const;

    std::size_t rowCountOffset_;
    Bytes content_;
    std::size_t firstRow_;
    std::uint16_t rowCount_ = 0;
};

/// Spreads rows over as many data pages as they need, in the order in which they come.
class RowPages {
public:
    RowPages(PageOutput& output, std::uint32_t owner) : output_(output), owner_(owner) {}

    /// The row must not be longer than fits an empty page.
    RowPointer Add(const Bytes& row);

    /// Writes the page that is still open.
    void Flush();

    /// Numbers of the pages used so far, ascending.
    [[nodiscard]] const std::vector<std::uint32_t>& Pages() const { return pages_; }

private:
    PageOutput& output_;
    std::uint32_t owner_;
    std::optional<DataPage> open_;
    std::vector<std::uint32_t> pages_;
};

}  // namespace tools
