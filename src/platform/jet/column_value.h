#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/jet/byte_view.h"
#include "platform/jet/page_file.h"
#include "platform/jet/row.h"
#include "platform/value.h"

namespace platform::jet {

/// The value of a column in a row. A boolean is never null: a row from before the column was added has False.
/// Throws Damage; Failure: kOverflow for a date outside the years 100 to 9999.
[[nodiscard]] Value ReadValue(const PageFile& file, const Row& row, const Column& column);

/// The bytes of a memo or OLE value from what its row holds: the value itself, or a pointer to one row or to
/// a chain of rows on pages of their own. Throws Damage where they are not as many as the row says.
[[nodiscard]] std::vector<std::uint8_t> ReadLongValue(const PageFile& file, ByteView reference);

/// The same, but no more than the first `mostBytes`, and reads no more of the file than holds these. Of a
/// chain it follows a few blocks only: no writer breaks the beginning of a value into more.
[[nodiscard]] std::vector<std::uint8_t> ReadLongValueBeginning(const PageFile& file, ByteView reference,
                                                               std::size_t mostBytes);

}  // namespace platform::jet
