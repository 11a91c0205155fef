#pragma once

#include "platform/jet/page_file.h"
#include "platform/jet/row.h"
#include "platform/value.h"

namespace platform::jet {

/// The value of a column in a row. A boolean is never null: a row from before the column was added has False.
/// Throws Damage; Failure: kOverflow for a date outside the years 100 to 9999.
[[nodiscard]] Value ReadValue(const PageFile& file, const Row& row, const Column& column);

}  // namespace platform::jet
