#include "platform/sockets/multicast_interface.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>

#include <memory>

#include "platform/sockets/open_socket.h"

namespace platform::sockets {
namespace {

/// A datagram socket that connects sends nothing; it only asks for the route.
bool HasRoute(const SocketAddress& group)
{
    const FileDescriptor socket = OpenSocket(group.Family(), SOCK_DGRAM);
    return ::connect(socket.Number(), group.Data(), group.Size()) == 0;
}

/// The index of the first interface with an IPv4 address that has these flags among the chosen ones; 0 for
/// none.
int FirstInterface(const ifaddrs* interfaces, unsigned chosen, unsigned wanted)
{
    for (const ifaddrs* entry = interfaces; entry != nullptr; entry = entry->ifa_next) {
        const bool hasIPv4 = entry->ifa_addr != nullptr && entry->ifa_addr->sa_family == AF_INET;
        if (hasIPv4 && (entry->ifa_flags & chosen) == wanted)
            return static_cast<int>(::if_nametoindex(entry->ifa_name));
    }
    return 0;
}

}  // namespace

int InterfaceForGroupWithoutRoute(const SocketAddress& group)
{
    ifaddrs* first = nullptr;
    if (HasRoute(group) || ::getifaddrs(&first) != 0)
        return 0;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);
    if (const int outward =
            FirstInterface(first, IFF_UP | IFF_MULTICAST | IFF_LOOPBACK, IFF_UP | IFF_MULTICAST))
        return outward;
    return FirstInterface(first, IFF_UP | IFF_LOOPBACK, IFF_UP | IFF_LOOPBACK);
}

}  // namespace platform::sockets
