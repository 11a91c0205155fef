#include "platform/sockets/socket_error.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/failure.h"

namespace platform::sockets {
namespace {

constexpr int kTooManySockets = 10024;
constexpr int kAddressFamilyNotSupported = 10047;
constexpr int kHostDown = 10064;

struct SocketError {
    int error;
    int number;
    const char* reason;
};

/// Reasons of our own: the C library's follow the operator's language.
constexpr std::array kSocketErrors = {
    SocketError{EACCES, failure::kSocketPermissionDenied, "permission denied"},
    SocketError{EPERM, failure::kSocketPermissionDenied, "permission denied"},
    SocketError{EINVAL, failure::kSocketInvalidArgument, "invalid argument"},
    SocketError{EMFILE, kTooManySockets, "too many open sockets"},
    SocketError{ENFILE, kTooManySockets, "too many open sockets"},
    SocketError{EAGAIN, failure::kSocketWouldBlock, "the network takes no more at the moment"},
    SocketError{EMSGSIZE, failure::kMessageTooLong, "longer than a datagram can be"},
    SocketError{EAFNOSUPPORT, kAddressFamilyNotSupported, "this kind of address is not supported"},
    SocketError{EADDRINUSE, failure::kAddressInUse, "the address is in use"},
    SocketError{EADDRNOTAVAIL, failure::kAddressNotAvailable, "the address is not available"},
    SocketError{ENETDOWN, failure::kNetworkDown, "the network is down"},
    SocketError{ENETUNREACH, failure::kNetworkUnreachable, "the network is unreachable"},
    SocketError{ECONNABORTED, failure::kConnectionAborted, "the connection was aborted"},
    SocketError{EPIPE, failure::kConnectionAborted, "the peer has closed the connection"},
    SocketError{ECONNRESET, failure::kConnectionReset, "the peer has reset the connection"},
    SocketError{ENOBUFS, failure::kNoBufferSpace, "no buffer space"},
    SocketError{ENOMEM, failure::kNoBufferSpace, "no buffer space"},
    SocketError{ENOTCONN, failure::kNotConnected, "not connected"},
    SocketError{ETIMEDOUT, failure::kConnectionTimedOut, "the peer does not answer"},
    SocketError{ECONNREFUSED, failure::kConnectionRefused, "the connection was refused"},
    SocketError{EHOSTDOWN, kHostDown, "the host is down"},
    SocketError{EHOSTUNREACH, failure::kHostUnreachable, "the host is unreachable"},
};

}  // namespace

Failure SocketFailure(int error, const std::string& what)
{
    const auto* const known = std::ranges::find(kSocketErrors, error, &SocketError::error);
    if (known == kSocketErrors.end())
        return {failure::kSocketInvalidArgument, what + ": system error " + std::to_string(error)};
    return {known->number, what + ": " + known->reason};
}

}  // namespace platform::sockets
