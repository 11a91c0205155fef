#pragma once

#include <string_view>

#include "make_database/bytes.h"
#include "make_database/layout.h"

namespace tools {

/// Page 0. `password` is UTF-8, empty for none; `created` is a day number. Failure: kTypeMismatch for a
/// password longer than 20 characters or one that Jet 3 cannot hold.
[[nodiscard]] Bytes BuildHeader(const Layout& layout, std::string_view password, double created);

}  // namespace tools
