#pragma once

#include <cstdint>
#include <span>

#include "platform/posix/file_descriptor.h"
#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// Sends a datagram to an IPv4 group for which the system has no route: through the first interface that is
/// up and can multicast, or else through the loop-back interface. False with errno where that fails too.
[[nodiscard]] bool SendThroughAnyInterface(const FileDescriptor& socket, std::span<const std::uint8_t> bytes,
                                           const SocketAddress& group);

}  // namespace platform::sockets
