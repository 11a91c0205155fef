#include "make_database/page_writer.h"

#include "platform/failure.h"

namespace tools {
namespace {

constexpr std::uint32_t kMostPages = 0x80000;
constexpr std::uint16_t kMostRowsOnAPage = 255;  // a row pointer has one byte for the row
constexpr std::size_t kOffsetSize = 2;

}  // namespace

std::uint32_t PageOutput::Allocate()
{
    if (next_ == kMostPages)
        throw platform::Failure(platform::failure::kOverflow,
                                "The database would be larger than its format allows");
    return next_++;
}

Bytes NewPage(const Layout& layout, PageType type)
{
    Bytes page(layout.pageSize, '\0');
    page[0] = static_cast<char>(type);
    page[1] = 1;
    return page;
}

DataPage::DataPage(const Layout& layout, std::uint32_t owner)
    : rowCountOffset_(layout.rowCountOffset),
      content_(NewPage(layout, PageType::kData)),
      firstRow_(content_.size())
{
    Store(content_, kOwnerOffset, owner);
}

std::size_t DataPage::Free() const
{
    return firstRow_ - (rowCountOffset_ + kOffsetSize * (1U + rowCount_));
}

bool DataPage::Fits(const Bytes& row) const
{
    return rowCount_ < kMostRowsOnAPage && row.size() + kOffsetSize <= Free();
}

std::uint8_t DataPage::Add(const Bytes& row)
{
    firstRow_ -= row.size();
    content_.replace(firstRow_, row.size(), row);
    ++rowCount_;
    Store(content_, rowCountOffset_ + kOffsetSize * rowCount_, static_cast<std::uint16_t>(firstRow_));
    Store(content_, rowCountOffset_, rowCount_);
    Store(content_, kFreeSpaceOffset, static_cast<std::uint16_t>(Free()));
    return static_cast<std::uint8_t>(rowCount_ - 1);
}

RowPointer RowPages::Add(const Bytes& row)
{
    if (open_ && !open_->Fits(row))
        Flush();
    if (!open_) {
        open_.emplace(output_.FileLayout(), owner_);
        pages_.push_back(output_.Allocate());
    }
    return {pages_.back(), open_->Add(row)};
}

void RowPages::Flush()
{
    if (open_)
        output_.Write(pages_.back(), open_->Content());
    open_.reset();
}

}  // namespace tools
