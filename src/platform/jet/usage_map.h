#pragma once

#include <cstdint>
#include <vector>

#include "platform/jet/page_file.h"
#include "platform/jet/row_position.h"

namespace platform::jet {

/// The pages that a usage map marks, in ascending order. Maps are either one bitmap that starts at any page,
/// or a list of pages that hold a bitmap each. Throws Damage, also for a page that the file does not have.
[[nodiscard]] std::vector<std::uint32_t> MarkedPages(const PageFile& file, RowPosition map);

/// The pages that belong to no table any more, in ascending order; what stands on them is of earlier. Throws
/// Damage.
[[nodiscard]] std::vector<std::uint32_t> FreePages(const PageFile& file);

}  // namespace platform::jet
