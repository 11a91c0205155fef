#pragma once

#include <string>
#include <string_view>

#include "platform/jet/byte_view.h"
#include "platform/jet/layout.h"

namespace platform::jet {

/// UTF-16, little-endian, as UTF-8; U+FFFD for each half of a surrogate pair that stands alone. Throws Damage
/// for an odd number of bytes.
[[nodiscard]] std::string FromUtf16(ByteView bytes);

/// A stored text as UTF-8. Jet 3: code page 1252. Jet 4: UTF-16 or, after the mark FF FE, compressed: one
/// byte a character (Latin-1) until a zero byte changes to UTF-16 and the next one back.
[[nodiscard]] std::string DecodeText(ByteView bytes, Format format);

/// The first characters of a stored text, of which these bytes are the beginning: they may end anywhere. A
/// character above U+FFFF counts as two.
[[nodiscard]] std::string DecodeTextBeginning(ByteView bytes, Format format, std::size_t mostCharacters);

/// Bytes whose order is the order of texts (UTF-8): near to the format's sort order "General".
///
/// Punctuation comes before digits, digits before letters, Latin letters before others. Letters count without
/// case; accents count only between texts that are otherwise equal. Blanks count, also at the end; control
/// characters (tabs, line ends) do not. Hyphens and apostrophes are punctuation in Jet 3, so that "co-op"
/// comes before "coop"; Jet 4 passes over them, and they decide only where all else is equal. Source: the
/// order of text indexes in files that Access wrote.
[[nodiscard]] std::string TextSortKey(std::string_view text, Format format);

}  // namespace platform::jet
