#pragma once

#include <cstdint>
#include <string>
#include <system_error>

#include "platform/failure.h"
#include "platform/posix/file_descriptor.h"
#include "platform/posix/system_calls.h"
#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// The system's calls on sockets, and what they report. Below a Failure every error is a std::error_code, as
/// LastError has it.

/// Why a connection that was under way has failed; none while it has not.
[[nodiscard]] std::error_code PendingError(const FileDescriptor& socket);

/// True for an error that passes by itself: a call that was interrupted, would block or found no memory may
/// succeed when it is made again.
[[nodiscard]] bool IsPassing(const std::error_code& error);

/// An error as a Failure with the number that people know for it. The description is `what`, a colon and the
/// reason in English.
[[nodiscard]] Failure SocketFailure(const std::error_code& error, const std::string& what);

/// A socket that never blocks and is not handed to child programs; none, with the reason in LastError, where
/// the system refuses.
[[nodiscard]] FileDescriptor OpenSocket(int family, int type);

/// Whether other sockets may hold the port, too. Over TCP only connections that have ended may.
enum class Sharing { kNo, kYes };

/// A socket bound to an address of this machine, or to a group; none, with the reason in LastError, where the system
/// refuses. Port 0 is any free port.
[[nodiscard]] FileDescriptor OpenBound(const SocketAddress& address, int type, Sharing sharing);

/// A socket bound to a port on all addresses: for IPv6 and IPv4 at once, or for IPv4 alone on a machine
/// without IPv6. Failure: kAddressInUse, kSocketPermissionDenied and the like.
[[nodiscard]] FileDescriptor OpenOnAllAddresses(std::uint16_t port, int type, Sharing sharing);

/// Why the port cannot be opened: the reason in LastError.
[[nodiscard]] Failure CannotOpenPort(std::uint16_t port);

/// Sets an option on a descriptor of ours. A kernel that does not know the option goes without it.
void SetOption(const FileDescriptor& socket, int level, int option, int value);

/// Has a TCP connection reset when it is closed: its peer sees that it is no orderly end, and what the system has
/// not delivered by then is thrown away.
void ResetOnClose(const FileDescriptor& socket);

}  // namespace platform::sockets
