#pragma once

#include <string>

#include "make_database/database_writer.h"

namespace tools {

/// Makes a database of the receipts of a CSV, in place of one that was there. Failure: number and description say
/// what is wrong, where it is the input with its path and line; the output is then as it was before.
///
/// Returns what whoever made the CSV should know of its end, with path and line: nothing where it is whole.
[[nodiscard]] std::string MakeDatabase(const std::string& input, const std::string& output,
                                       const DatabaseOptions& options);

}  // namespace tools
