#include "platform/sockets/multicast_interface.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>

namespace platform::sockets {
namespace {

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

/// 0 for none.
int InterfaceForGroups()
{
    ifaddrs* first = nullptr;
    if (::getifaddrs(&first) != 0)
        return 0;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(first, &::freeifaddrs);
    if (const int outward =
            FirstInterface(first, IFF_UP | IFF_MULTICAST | IFF_LOOPBACK, IFF_UP | IFF_MULTICAST))
        return outward;
    return FirstInterface(first, IFF_UP | IFF_LOOPBACK, IFF_UP | IFF_LOOPBACK);
}

}  // namespace

bool SendThroughAnyInterface(const FileDescriptor& socket, std::span<const std::uint8_t> bytes,
                             const SocketAddress& group)
{
    const in_pktinfo through{.ipi_ifindex = InterfaceForGroups(), .ipi_spec_dst = {}, .ipi_addr = {}};
    if (through.ipi_ifindex == 0) {
        errno = ENETUNREACH;
        return false;
    }
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof through)> control{};
    iovec piece{.iov_base = const_cast<std::uint8_t*>(bytes.data()), .iov_len = bytes.size()};
    msghdr message{};
    message.msg_name = const_cast<sockaddr*>(group.Data());
    message.msg_namelen = group.Size();
    message.msg_iov = &piece;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = IPPROTO_IP;
    header->cmsg_type = IP_PKTINFO;
    header->cmsg_len = CMSG_LEN(sizeof through);
    std::memcpy(CMSG_DATA(header), &through, sizeof through);
    return ::sendmsg(socket.Number(), &message, 0) >= 0;
}

}  // namespace platform::sockets
