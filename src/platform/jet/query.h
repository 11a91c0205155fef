#pragma once

#include <string>

namespace platform::jet {

/// The one kind of query that there is: all columns of a table in the order of one.
struct Query {
    std::string table;
    std::string orderColumn;
};

/// Reads "SELECT * FROM table ORDER BY column". Failure: kInvalidCall for anything else.
[[nodiscard]] Query ParseQuery(const std::string& text);

}  // namespace platform::jet
