#pragma once

#include <cstdint>
#include <span>

namespace platform::jet {

/// Encodes or decodes bytes in place with the RC4 stream of a key; doing it twice gives the bytes back. The
/// key must not be empty.
void ApplyRc4(std::span<const std::uint8_t> key, std::span<std::uint8_t> bytes);

}  // namespace platform::jet
