#pragma once

#include <string>

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

}  // namespace platform::jet
