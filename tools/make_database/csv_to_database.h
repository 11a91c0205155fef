#pragma once

#include <string>

#include "make_database/database_writer.h"

namespace tools {

/// Makes a database of the receipts of a CSV, in place of one that was there. Failure: number and description say
/// what is wrong, where it is the input with its path and line; the output is then as it was before.
///
/// Returns what is to be told of the input all the same: that it is a recording that was cut off. Empty for nothing.
[[nodiscard]] std::string MakeDatabase(const std::string& input, const std::string& output,
                                       const DatabaseOptions& options);

}  // namespace tools
