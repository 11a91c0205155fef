#pragma once

#include <cstdint>
#include <vector>

#include "make_database/bytes.h"
#include "make_database/page_writer.h"

namespace tools {

/// The row that says which pages belong to a table or an index, for page numbers in ascending order.
///
/// Pages that lie near enough to each other become one bitmap in the row: u8 0, u32 first page, a bit for
/// each page from there on. Others become bitmaps on pages of their own, which are written to the output: u8
/// 1, then the u32 number of each bitmap page, 0 where none of its pages is used (source: files written by
/// Access 97 and Access 2000, which use both kinds).
[[nodiscard]] Bytes BuildUsageMap(PageOutput& output, const std::vector<std::uint32_t>& pages);

/// The data page that holds all usage maps of a file, one a row.
class UsageMapPage {
public:
    UsageMapPage(PageOutput& output, std::uint32_t number)
        : output_(output), number_(number), page_(output.FileLayout(), kNoOwner)
    {}

    /// Adds a map of these pages, which ascend.
    RowPointer Add(const std::vector<std::uint32_t>& pages)
    {
        return {number_, page_.Add(BuildUsageMap(output_, pages))};
    }

    void Write() { output_.Write(number_, page_.Content()); }

private:
    static constexpr std::uint32_t kNoOwner = 0;

    PageOutput& output_;
    std::uint32_t number_;
    DataPage page_;
};

}  // namespace tools
