#pragma once

#include <string>
#include <string_view>

#include "platform/jet/layout.h"

namespace platform::jet {

/// Bytes whose order is the order of texts (UTF-8): near to the format's sort order "General".
///
/// Punctuation comes before digits, digits before letters, Latin letters before others. Letters count without
/// case; accents count only between texts that are otherwise equal. Blanks count, also at the end; control
/// characters (tabs, line ends) do not. Hyphens and apostrophes are punctuation in Jet 3, so that "co-op"
/// comes before "coop"; Jet 4 passes over them, and they decide only where all else is equal. Source: the
/// order of text indexes in files that Access wrote.
[[nodiscard]] std::string TextSortKey(std::string_view text, Format format);

}  // namespace platform::jet
