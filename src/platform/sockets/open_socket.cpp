#include "platform/sockets/open_socket.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <string>

#include "platform/sockets/socket_address.h"
#include "platform/sockets/socket_error.h"

namespace platform::sockets {
namespace {

/// Bound, or none with the reason in errno.
FileDescriptor OpenInFamily(int family, int type, std::uint16_t port)
{
    FileDescriptor socket = OpenSocket(family, type);
    if (!socket.IsOpen())
        return {};
    // With port 0 a shared port could be picked as the free one.
    if (port != 0)
        SetOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    if (family == AF_INET6)
        SetOption(socket, IPPROTO_IPV6, IPV6_V6ONLY, 0);
    SocketAddress address = SocketAddress::Any(family);
    address.SetPort(port);
    if (::bind(socket.Number(), address.Data(), address.Size()) == 0)
        return socket;
    const int reason = errno;
    socket.Close();
    errno = reason;
    return {};
}

}  // namespace

FileDescriptor OpenSocket(int family, int type)
{
    return FileDescriptor(::socket(family, type | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
}

FileDescriptor OpenOnAllAddresses(int type, std::uint16_t port)
{
    FileDescriptor socket = OpenInFamily(AF_INET6, type, port);
    if (!socket.IsOpen() && (errno == EAFNOSUPPORT || errno == EADDRNOTAVAIL))
        socket = OpenInFamily(AF_INET, type, port);
    if (!socket.IsOpen())
        throw SocketFailure(errno, "Cannot open local port " + std::to_string(port));
    return socket;
}

void SetOption(const FileDescriptor& socket, int level, int option, int value)
{
    ::setsockopt(socket.Number(), level, option, &value, sizeof value);
}

}  // namespace platform::sockets
