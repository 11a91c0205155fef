#pragma once

#include <string_view>

#include "make_database/bytes.h"
#include "make_database/layout.h"

namespace tools {

/// A UTF-8 text as a text column or memo holds it.
///
/// Jet 3: bytes of code page 1252. Jet 4: UTF-16; or, with `compress` and where that is shorter, the bytes FF
/// FE and then one byte for each character below U+0100, with a 00 byte before and after runs of two-byte
/// units (source: text columns with "Unicode compression" in files of Access 2000). Failure: kTypeMismatch
/// for a character that the format cannot hold.
[[nodiscard]] Bytes EncodeText(std::string_view utf8, Format format, bool compress);

}  // namespace tools
