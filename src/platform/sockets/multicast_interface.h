#pragma once

#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// The index of the interface through which records to an IPv4 group leave where the system has no route for
/// it: the first that is up and can multicast, or else the loop-back interface. 0 where the system has a
/// route, or no interface at all.
[[nodiscard]] int InterfaceForGroupWithoutRoute(const SocketAddress& group);

}  // namespace platform::sockets
