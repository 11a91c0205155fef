#pragma once

#include <functional>

namespace platform::sockets {

/// Runs the event loop until the condition holds. False when it does not within a time that nothing here
/// takes.
[[nodiscard]] bool WaitFor(const std::function<bool()>& condition);

/// Runs the event loop until it has nothing left to do. False when it never comes to rest.
[[nodiscard]] bool ComesToRest();

}  // namespace platform::sockets
