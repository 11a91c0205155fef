#include "platform/jet/damage_report.h"
#include "platform/jet/data_page.h"
#include "platform/jet/table_scan.h"

/// Usage map
///
/// A row on a data page that marks pages, one bit each, the lowest bit of a byte first. It is of one of two
/// kinds:
///
///   OFFSET   SIZE    DESCRIPTION
///   0        1       0: one bitmap
///   1        4       page of the first bit
///   5        n       bitmap. It reaches as far as the row; a table with pages elsewhere has the other kind.
///
///   OFFSET   SIZE    DESCRIPTION
///   0        1       1: a list of pages
///   1        4 x n   pages of kind 5, 0 for none. The bitmap of each begins at its byte 4; that of the first
///                    marks the first (2044 | 4092) x 8 pages of the file, that of the second as many more, and
///                    so on.
///
/// Files that Access wrote mostly have the first kind, those of other programs the second.
namespace platform::jet {
namespace {

constexpr std::uint8_t kInline = 0;
constexpr std::uint8_t kPageList = 1;
constexpr std::size_t kInlineBitmap = 5;
constexpr std::size_t kPageBitmap = 4;

/// The map of the file's free pages: the first row of the first page after the header.
constexpr RowPosition kFreePagesMap = PositionOf(1, 0);

/// Marks of pages that the file does not have (yet).
enum class PastTheEnd { kDamage, kPassedOver };

class MarkCollector {
public:
    MarkCollector(std::uint64_t pageCount, PastTheEnd pastTheEnd)
        : pageCount_(pageCount), pastTheEnd_(pastTheEnd)
    {}

    void Add(ByteView bitmap, std::uint64_t firstPage)
    {
        for (std::size_t i = 0; i < bitmap.Size(); ++i)
            for (unsigned bit = 0; bit < 8; ++bit)
                if ((bitmap.U8(i) >> bit & 1) != 0)
                    AddPage(firstPage + i * 8 + bit);
    }

    [[nodiscard]] std::vector<std::uint32_t> ReleasePages() { return std::move(pages_); }

private:
    void AddPage(std::uint64_t page)
    {
        if (page < pageCount_)
            pages_.push_back(static_cast<std::uint32_t>(page));
        else if (pastTheEnd_ == PastTheEnd::kDamage)
            throw Damage("a table has a page past the end of the file");
    }

    std::uint64_t pageCount_;
    PastTheEnd pastTheEnd_;
    std::vector<std::uint32_t> pages_;
};

void AddPageList(const PageFile& file, ByteView list, MarkCollector& marks)
{
    const std::size_t pagesPerBitmap = (file.PageLayout().pageSize - kPageBitmap) * 8;
    for (std::size_t i = 0; i < list.Size() / 4; ++i) {
        const std::uint32_t number = list.U32(i * 4);
        if (number == 0)
            continue;
        const Page page = file.ReadPage(number, PageType::kUsageMap);
        marks.Add(page.View().From(kPageBitmap), i * pagesPerBitmap);
    }
}

void AddMap(const PageFile& file, ByteView bytes, MarkCollector& marks)
{
    switch (bytes.U8(0)) {
        case kInline:
            return marks.Add(bytes.From(kInlineBitmap), bytes.U32(1));
        case kPageList:
            return AddPageList(file, bytes.From(1), marks);
        default:
            throw Damage("a usage map is of no known kind");
    }
}

std::vector<std::uint32_t> PagesIn(const PageFile& file, RowPosition map, PastTheEnd pastTheEnd)
{
    MarkCollector marks(file.PageCount(), pastTheEnd);
    OnPage(map.Page(), [&] {
        const DataPage page(file.ReadPage(map.Page(), PageType::kData), file.PageLayout());
        AddMap(file, page.SlotAt(map.Row()).bytes, marks);
    });
    return marks.ReleasePages();
}

}  // namespace

std::vector<std::uint32_t> MarkedPages(const PageFile& file, RowPosition map)
{
    return PagesIn(file, map, PastTheEnd::kDamage);
}

std::vector<std::uint32_t> FreePages(const PageFile& file)
{
    return PagesIn(file, kFreePagesMap, PastTheEnd::kPassedOver);
}

}  // namespace platform::jet
