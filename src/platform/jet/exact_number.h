#pragma once

#include <array>
#include <cstdint>

#include "platform/value.h"

namespace platform::jet {

/// An unsigned whole number of 128 bits, most significant part first.
using Magnitude = std::array<std::uint32_t, 4>;

/// The number sign x magnitude / 10^scale.
[[nodiscard]] ExactNumber ToExactNumber(bool negative, Magnitude magnitude, std::size_t scale);

}  // namespace platform::jet
