#include "make_database/usage_map.h"

namespace tools {
namespace {

constexpr std::size_t kInlineBitmapOffset = 5;
constexpr std::size_t kPageBitmapOffset = 4;
constexpr std::uint8_t kInlineKind = 0;
constexpr std::uint8_t kReferenceKind = 1;

Bytes InlineMap(std::size_t size, const std::vector<std::uint32_t>& pages)
{
    Bytes map(size, '\0');
    map[0] = kInlineKind;
    if (pages.empty())
        return map;
    Store(map, 1, pages.front());
    for (const std::uint32_t page : pages)
        SetBit(map, kInlineBitmapOffset, page - pages.front());
    return map;
}

Bytes ReferenceMap(PageOutput& output, std::size_t size, const std::vector<std::uint32_t>& pages)
{
    const std::size_t pagesPerBitmap = (output.FileLayout().pageSize - kPageBitmapOffset) * 8;
    Bytes map(size, '\0');
    map[0] = kReferenceKind;
    for (std::size_t i = 0; i < pages.size();) {
        const std::size_t index = pages[i] / pagesPerBitmap;
        Bytes bitmap = NewPage(output.FileLayout(), PageType::kUsageBitmap);
        for (; i < pages.size() && pages[i] / pagesPerBitmap == index; ++i)
            SetBit(bitmap, kPageBitmapOffset, pages[i] % pagesPerBitmap);
        const std::uint32_t number = output.Allocate();
        output.Write(number, bitmap);
        Store(map, 1 + index * sizeof number, number);
    }
    return map;
}

}  // namespace

Bytes BuildUsageMap(PageOutput& output, const std::vector<std::uint32_t>& pages)
{
    const std::size_t size = output.FileLayout().usageMapSize;
    const std::size_t inlineReach = (size - kInlineBitmapOffset) * 8;
    const bool fits = pages.empty() || pages.back() - pages.front() < inlineReach;
    return fits ? InlineMap(size, pages) : ReferenceMap(output, size, pages);
}

}  // namespace tools
