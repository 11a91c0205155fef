#include "platform/jet/page_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/failure.h"
#include "platform/jet/damage_report.h"
#include "platform/jet/header.h"

/// Pages
///
/// A file is pages of 2048 | 4096 bytes, numbered from 0, which is the header. The first byte of each other
/// one tells its kind:
///
///   1  rows of a table, or pieces of long values     data_page.cpp
///   2  definition of a table                         table_definition.cpp
///   3  index page that leads to lower ones           index_page.cpp
///   4  index page that leads to rows                 index_page.cpp
///   5  bitmap of a usage map                         usage_map.cpp
///
/// Data and index pages have at offset 4, in four bytes, the page of their table's definition: their owner. A
/// page that is reached by a wrong way shows by kind and owner. On a data page of long values the four bytes
/// are the letters LVAL.
///
/// Where the header has a page key that is not 0, page n is encoded with the RC4 stream of the four bytes of
/// (key XOR n), whether there is a password or not.
namespace platform::jet {

PageFile::PageFile(std::shared_ptr<const ByteSource> source, std::string name)
    : source_(std::move(source)), name_(std::move(name)), kept_(kPagesKept)
{
    std::array<std::uint8_t, kHeaderSize> bytes{};
    const ByteView start{std::span(bytes).first(source_->Read(0, bytes))};
    const std::optional<Format> format = FormatOf(start);
    if (!format)
        throw Failure(failure::kUnrecognisedFormat, "Unrecognised database format of " + name_);
    format_ = *format;
    header_ = OnPage(0, [&] { return ReadHeader(start, format_); });
}

std::uint64_t PageFile::PageCount() const
{
    return source_->Size() / PageLayout().pageSize;
}

Page PageFile::ReadPage(std::uint32_t number) const
{
    KeptPage& kept = kept_[number % kept_.size()];
    if (number == 0 || kept.number != number)
        kept = {number, Page(LoadPage(number))};
    return kept.page;
}

Page PageFile::ReadPage(std::uint32_t number, PageType type) const
{
    Page page = ReadPage(number);
    if (!page.Is(type))
        throw Damage("page " + std::to_string(number) + " is not of the kind that it is used as");
    return page;
}

void PageFile::ForgetPages() const
{
    kept_.assign(kPagesKept, {});
    window_ = {};
}

std::vector<std::uint8_t> PageFile::LoadPage(std::uint32_t number) const
{
    if (number < window_.first || number - window_.first >= window_.count)
        FillWindow(number);
    const std::size_t size = PageLayout().pageSize;
    if (number == 0 || number - window_.first >= window_.count)
        throw Damage("it has no page " + std::to_string(number));
    const auto stored = std::span(window_.bytes).subspan((number - window_.first) * size, size);
    std::vector<std::uint8_t> bytes(stored.begin(), stored.end());
    if (header_.pageKey != 0) {
        const std::uint32_t key = header_.pageKey ^ number;
        const std::array<std::uint8_t, 4> keyBytes = {
            static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(key >> 8),
            static_cast<std::uint8_t>(key >> 16), static_cast<std::uint8_t>(key >> 24)};
        ApplyRc4(keyBytes, bytes);
    }
    return bytes;
}

void PageFile::FillWindow(std::uint32_t number) const
{
    // A reader that goes forward gets twice as many pages with each read, one that jumps about a single one.
    // On its way forward it may pass over pages, but over fewer than the last read gave: else most of what is
    // read ahead would be of no use.
    const std::uint32_t end = window_.first + window_.count;
    const bool goesForward = window_.count > 0 && number >= end && number - end < window_.count;
    const std::uint32_t count = goesForward ? std::min(2 * window_.count, kMostPagesAhead) : 1;
    const std::size_t size = PageLayout().pageSize;
    window_.bytes.resize(count * size);
    window_.first = number;
    window_.count = 0;
    window_.count =
        static_cast<std::uint32_t>(source_->Read(std::uint64_t{number} * size, window_.bytes) / size);
}

}  // namespace platform::jet
