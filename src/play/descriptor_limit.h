#pragma once

#include <cstdint>

namespace player {

/// Raises the number of files that this process may have open to what the system permits at most, and returns it.
[[nodiscard]] std::int64_t RaiseDescriptorLimit();

/// Number of files that this process has open now.
[[nodiscard]] std::int64_t OpenDescriptors();

}  // namespace player
