#pragma once

#include <cstdint>

#include "platform/posix/file_descriptor.h"

namespace platform::sockets {

/// A socket that never blocks and is not handed to child programs; none, with the reason in errno, where the
/// system refuses.
[[nodiscard]] FileDescriptor OpenSocket(int family, int type);

/// A socket bound to a port on all addresses: for IPv6 and IPv4 at once, or for IPv4 alone on a machine
/// without IPv6. Port 0 is any free port. Failure: kAddressInUse, kSocketPermissionDenied and the like.
[[nodiscard]] FileDescriptor OpenOnAllAddresses(int type, std::uint16_t port);

/// Sets an option on a descriptor of ours. A kernel that does not know the option goes without it.
void SetOption(const FileDescriptor& socket, int level, int option, int value);

}  // namespace platform::sockets
