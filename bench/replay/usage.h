#pragma once

#include <chrono>
#include <cstddef>

/// What this process uses of the machine.
namespace bench {

/// Processor time of the calling thread, the system's share included.
[[nodiscard]] std::chrono::nanoseconds ThreadTime();

/// Memory that is in use, in bytes.
[[nodiscard]] std::size_t ResidentBytes();

[[nodiscard]] std::size_t OpenDescriptors();

}  // namespace bench
