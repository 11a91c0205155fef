#pragma once

#include <cstdint>
#include <vector>

#include "platform/jet/byte_view.h"
#include "platform/jet/page_file.h"

namespace platform::jet {

/// The bytes of a memo or OLE value from what its row holds: the value itself, or a pointer to one row or to
/// a chain of rows on pages of their own. Throws Damage where they are not as many as the row says.
[[nodiscard]] std::vector<std::uint8_t> ReadLongValue(const PageFile& file, ByteView reference);

/// The same, but no more than the first `mostBytes`, and reads no more of the file than holds these. Of a chain
/// it follows a few blocks only: no writer breaks the beginning of a value into more.
[[nodiscard]] std::vector<std::uint8_t> ReadLongValueBeginning(const PageFile& file, ByteView reference,
                                                               std::size_t mostBytes);

}  // namespace platform::jet
