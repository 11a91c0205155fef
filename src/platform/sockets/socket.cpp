#include "platform/sockets/socket.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

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

std::string Reason(const std::error_code& error)
{
    const char* const description = ::strerrordesc_np(error.value());
    return description != nullptr ? description : "system error " + std::to_string(error.value());
}

}  // namespace

std::error_code PendingError(const FileDescriptor& socket)
{
    int error = 0;
    socklen_t size = sizeof error;
    if (::getsockopt(socket.Number(), SOL_SOCKET, SO_ERROR, &error, &size) != 0)
        return LastError();
    return {error, std::generic_category()};
}

bool IsPassing(const std::error_code& error)
{
    constexpr std::array kPassing = {EAGAIN, EINTR, ENOMEM, ENOBUFS};
    return std::ranges::find(kPassing, error.value()) != kPassing.end();
}

Failure SocketFailure(const std::error_code& error, const std::string& what)
{
    const auto* const known = std::ranges::find(kSocketErrors, error.value(), &SocketError::error);
    if (known == kSocketErrors.end())
        return {failure::kSocketInvalidArgument, what + ": " + Reason(error)};
    return {known->number, what + ": " + known->reason};
}

FileDescriptor OpenSocket(int family, int type)
{
    return FileDescriptor(::socket(family, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

FileDescriptor OpenBound(const SocketAddress& address, int type, Sharing sharing)
{
    FileDescriptor socket = OpenSocket(address.Family(), type);
    if (!socket.IsOpen())
        return {};
    // With port 0 a shared port could be picked as the free one.
    if (sharing == Sharing::kYes && address.Port() != 0)
        SetOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    if (address.Family() == AF_INET6)
        SetOption(socket, IPPROTO_IPV6, IPV6_V6ONLY, 0);
    if (::bind(socket.Number(), address.Data(), address.Size()) == 0)
        return socket;
    const int reason = errno;
    socket.Close();
    errno = reason;
    return {};
}

FileDescriptor OpenOnAllAddresses(std::uint16_t port, int type, Sharing sharing)
{
    FileDescriptor socket = OpenBound(SocketAddress::Any(AF_INET6, port), type, sharing);
    if (!socket.IsOpen() && (errno == EAFNOSUPPORT || errno == EADDRNOTAVAIL))
        socket = OpenBound(SocketAddress::Any(AF_INET, port), type, sharing);
    if (!socket.IsOpen())
        throw CannotOpenPort(port);
    return socket;
}

Failure CannotOpenPort(std::uint16_t port)
{
    const auto error = LastError();
    return SocketFailure(
        error, port == 0 ? "Cannot open a local port" : "Cannot open local port " + std::to_string(port));
}

void SetOption(const FileDescriptor& socket, int level, int option, int value)
{
    ::setsockopt(socket.Number(), level, option, &value, sizeof value);
}

void ResetOnClose(const FileDescriptor& socket)
{
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket.Number(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

}  // namespace platform::sockets
