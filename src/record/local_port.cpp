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

using namespace platform::sockets;
using platform::FileDescriptor;

SocketAddress TypedAddress(const HostAndPort& at)
{
    auto address = AddressFromText(at.host);
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
    const Sharing sharing = type == SOCK_STREAM ? Sharing::kYes : Sharing::kNo;
    if (at.host.empty())
        return OpenOnAllAddresses(at.port, type, sharing);
    FileDescriptor socket = OpenBound(TypedAddress(at), type, sharing);
    if (!socket.IsOpen())
        throw CannotOpenPort(at.port);
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
        socket = OpenBound(SocketAddress::Any(group.Family(), at.port), SOCK_DGRAM, Sharing::kYes);
    const std::string joined = socket.IsOpen() ? JoinOnAll(socket, group) : "";
    if (joined.empty())
        throw SocketFailure(platform::LastError(), "Cannot join group " + group.Text());
    SetOption(socket, IPPROTO_IP, IP_MULTICAST_ALL, 0);
    SetOption(socket, IPPROTO_IPV6, IPV6_MULTICAST_ALL, 0);
    return {std::move(socket), joined};
}

}  // namespace record
