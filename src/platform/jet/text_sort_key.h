#pragma once

#include <string>
#include <string_view>

namespace platform::jet {

/// Bytes whose order is the order of texts (UTF-8): near to the General sort order of the file format.
///
/// Letters count without case; accents count only between texts that are otherwise equal, hyphens and
/// apostrophes after them. Punctuation comes before digits, digits before letters, Latin letters before
/// others. Control characters do not count.
[[nodiscard]] std::string TextSortKey(std::string_view text);

}  // namespace platform::jet
