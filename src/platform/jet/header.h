#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/jet/byte_view.h"
#include "platform/jet/layout.h"

namespace platform::jet {

/// How many bytes from the start of a file tell all that Header holds.
inline constexpr std::size_t kHeaderSize = 0x98;

/// What the first page says about the whole file.
struct Header {
    std::string password;       // UTF-8, empty for a file without one
    std::uint32_t pageKey = 0;  // 0: pages are stored plainly
};

/// The format of a file that begins with these bytes; nothing for a file that is no database of a version
/// that is read here.
[[nodiscard]] std::optional<Format> FormatOf(ByteView start);

/// Reads the header, whose bytes are masked with a fixed RC4 stream, the Jet 4 password once more with the
/// file's creation date. Throws Damage where there are fewer bytes than kHeaderSize or the date is none.
[[nodiscard]] Header ReadHeader(ByteView start, Format format);

/// Encodes or decodes bytes in place with the RC4 stream of a key; doing it twice gives the bytes back. The
/// key must not be empty.
void ApplyRc4(std::span<const std::uint8_t> key, std::span<std::uint8_t> bytes);

}  // namespace platform::jet
