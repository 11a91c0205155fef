#pragma once

#include <string>

#include "platform/failure.h"

namespace platform::sockets {

/// What the operating system reports in errno, as a Failure with the number that people know for it. The
/// description is `what`, a colon and the reason in English.
[[nodiscard]] Failure SocketFailure(int error, const std::string& what);

}  // namespace platform::sockets
