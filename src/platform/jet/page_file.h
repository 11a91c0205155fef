#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/jet/byte_source.h"
#include "platform/jet/byte_view.h"
#include "platform/jet/header.h"
#include "platform/jet/layout.h"

namespace platform::jet {

/// Owner of the pages that hold long values rather than the rows of a table: "LVAL".
inline constexpr std::uint32_t kLongValueOwner = 0x4C41564C;

/// The bytes of one page, decoded. Whoever holds it keeps it as it was read.
class Page {
public:
    explicit Page(std::vector<std::uint8_t> bytes)
        : bytes_(std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes)))
    {}
    [[nodiscard]] ByteView View() const { return ByteView(*bytes_); }

    [[nodiscard]] bool Is(PageType type) const { return View().U8(0) == static_cast<std::uint8_t>(type); }

    /// Of a data or index page: the page of its table's definition, or kLongValueOwner.
    [[nodiscard]] std::uint32_t Owner() const { return View().U32(kOwnerOffset); }

private:
    static constexpr std::size_t kOwnerOffset = 4;

    std::shared_ptr<const std::vector<std::uint8_t>> bytes_;
};

/// A database file as numbered pages of one size. It keeps the last pages it read, a fixed number of them, so
/// that what others change in the file may show late.
class PageFile {
public:
    /// Reads the header. `name` stands for the file in descriptions. Failure: kUnrecognisedFormat. Throws
    /// Damage.
    PageFile(std::shared_ptr<const ByteSource> source, std::string name);

    [[nodiscard]] const std::string& Name() const { return name_; }
    [[nodiscard]] Format FileFormat() const { return format_; }
    [[nodiscard]] const Layout& PageLayout() const { return LayoutOf(format_); }
    [[nodiscard]] const std::string& Password() const { return header_.password; }

    /// How many whole pages the file has at this moment.
    [[nodiscard]] std::uint64_t PageCount() const;

    /// Throws Damage for page 0, which is the header, and for a page that the file does not have.
    [[nodiscard]] Page ReadPage(std::uint32_t number) const;

    /// Reads a page that must be of this type, or throws Damage.
    [[nodiscard]] Page ReadPage(std::uint32_t number, PageType type) const;

    /// Reads every page anew from here on, so that what others changed in the file shows.
    void ForgetPages() const;

private:
    static constexpr std::size_t kPagesKept = 128;
    static constexpr std::uint32_t kMostPagesAhead = 32;

    struct KeptPage {
        std::uint32_t number = 0;
        Page page{{}};
    };

    /// Pages as they stand in the file, side by side.
    struct Window {
        std::uint32_t first = 0;
        std::uint32_t count = 0;
        std::vector<std::uint8_t> bytes;
    };

    [[nodiscard]] std::vector<std::uint8_t> LoadPage(std::uint32_t number) const;
    void FillWindow(std::uint32_t number) const;

    std::shared_ptr<const ByteSource> source_;
    std::string name_;
    Format format_ = Format::kJet4;
    Header header_;
    mutable std::vector<KeptPage> kept_;
    mutable Window window_;
};

}  // namespace platform::jet
