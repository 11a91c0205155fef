#include "record/local_port.h"

#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstring>
#include <memory>

#include "platform/sockets/socket.h"
#include "platform/sockets/socket_address.h"

namespace record {
namespace {

using platform::FileDescriptor;
using platform::sockets::SetOption;
using platform::sockets::SocketAddress;
using platform::sockets::SocketFailure;

enum class Sharing { kNo, kYes };

/// None, with the reason in errno, where the system refuses.
FileDescriptor OpenBound(const SocketAddress& address, int type, Sharing sharing)
{
    FileDescriptor socket = platform::sockets::OpenSocket(address.Family(), type);
    if (!socket.IsOpen())
        return {};
    if (sharing == Sharing::kYes)
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

SocketAddress AnyAddress(int family, std::uint16_t port)
{
    SocketAddress address = SocketAddress::Any(family);
    address.SetPort(port);
    return address;
}

/// In both families at once where the machine knows both.
FileDescriptor OpenOnAll(std::uint16_t port, int type, Sharing sharing)
{
    FileDescriptor socket = OpenBound(AnyAddress(AF_INET6, port), type, sharing);
    if (!socket.IsOpen() && (errno == EAFNOSUPPORT || errno == EADDRNOTAVAIL))
        socket = OpenBound(AnyAddress(AF_INET, port), type, sharing);
    return socket;
}

SocketAddress TypedAddress(const HostAndPort& at)
{
    auto address = platform::sockets::AddressFromText(at.host);
    if (!address)
        throw WrongUsage("--address: \"" + at.host + "\" is no address in digits");
    address->SetPort(at.port);
    return *address;
}

bool Join(const FileDescriptor& socket, const SocketAddress& group, unsigned interface)
{
    group_req request{};
    request.gr_interface = interface;
    std::memcpy(&request.gr_group, group.Data(), group.Size());
    const int level = group.Family() == AF_INET6 ? IPPROTO_IPV6 : IPPROTO_IP;
    return ::setsockopt(socket.Number(), level, MCAST_JOIN_GROUP, &request, sizeof request) == 0;
}

std::string JoinOnAll(const FileDescriptor& socket, const SocketAddress& group)
{
    std::string joined;
    const std::unique_ptr<struct if_nameindex, decltype(&::if_freenameindex)> interfaces(::if_nameindex(),
                                                                                         &::if_freenameindex);
    for (const auto* each = interfaces.get(); each != nullptr && each->if_index != 0; ++each) {
        if (Join(socket, group, each->if_index))
            joined += (joined.empty() ? "" : ", ") + std::string(each->if_name);
    }
    return joined;
}

}  // namespace

FileDescriptor OpenLocalPort(const HostAndPort& at, int type)
{
    // A TCP port is shared only with connections that have ended.
    const Sharing sharing = type == SOCK_STREAM && at.port != 0 ? Sharing::kYes : Sharing::kNo;
    FileDescriptor socket =
        at.host.empty() ? OpenOnAll(at.port, type, sharing) : OpenBound(TypedAddress(at), type, sharing);
    if (!socket.IsOpen())
        throw SocketFailure(platform::LastError(), "Cannot open local port " + std::to_string(at.port));
    return socket;
}

JoinedGroup JoinGroup(const HostAndPort& at)
{
    const SocketAddress group = TypedAddress(at);
    if (!group.IsGroup())
        throw WrongUsage("--address: \"" + at.host + "\" is no multicast group");
    // Bound to the group, the socket gets nothing else that comes to the port.
    FileDescriptor socket = OpenBound(group, SOCK_DGRAM, Sharing::kYes);
    // A group of one link cannot be bound without the link's name.
    if (!socket.IsOpen() && errno == EINVAL)
        socket = OpenBound(AnyAddress(group.Family(), at.port), SOCK_DGRAM, Sharing::kYes);
    const std::string joined = socket.IsOpen() ? JoinOnAll(socket, group) : "";
    if (joined.empty())
        throw SocketFailure(platform::LastError(), "Cannot join group " + group.Text());
    SetOption(socket, IPPROTO_IP, IP_MULTICAST_ALL, 0);
    SetOption(socket, IPPROTO_IPV6, IPV6_MULTICAST_ALL, 0);
    return {std::move(socket), joined};
}

}  // namespace record
