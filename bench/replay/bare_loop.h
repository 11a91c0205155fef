#pragma once

#include <chrono>

#include "replay/receiver.h"

namespace bench {

/// The best that this machine can do: sends a record to a receiver at every expiration of a periodic timer of the
/// system, and does nothing else.
void RunBareLoop(Protocol protocol, std::uint16_t port, std::size_t recordSize,
                 std::chrono::milliseconds interval, std::chrono::seconds duration);

}  // namespace bench
