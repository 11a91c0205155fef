#include "platform/sockets/multicast.h"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

#include "platform/failure.h"
#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

SocketAddress CheckedGroup(const std::string& address, std::int32_t port)
{
    auto group = AddressFromText(WithoutBlanksAround(address));
    if (!group || !group->IsGroup())
        throw Failure(failure::kInvalidPropertyValue, "\"" + address + "\" is not a multicast group");
    group->SetPort(CheckedPort(port, 1));
    return *group;
}

void StayOnThisNetwork(const FileDescriptor& socket, int family)
{
    if (family == AF_INET6) {
        SetOption(socket, IPPROTO_IPV6, IPV6_MULTICAST_HOPS, 1);
        SetOption(socket, IPPROTO_IPV6, IPV6_MULTICAST_LOOP, 1);
    } else {
        SetOption(socket, IPPROTO_IP, IP_MULTICAST_TTL, 1);
        SetOption(socket, IPPROTO_IP, IP_MULTICAST_LOOP, 1);
    }
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

/// Sends to an IPv4 group for which the system has no route: through the first interface that is up and can
/// multicast, or else through the loop-back interface. False with the reason in LastError.
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

/// False, with the reason in LastError, where the network refuses the bytes.
bool Send(const FileDescriptor& socket, std::span<const std::uint8_t> bytes, const SocketAddress& group)
{
    if (::sendto(socket.Number(), bytes.data(), bytes.size(), 0, group.Data(), group.Size()) >= 0)
        return true;
    const bool withoutRoute = errno == ENETUNREACH && group.Family() == AF_INET;
    return withoutRoute && SendThroughAnyInterface(socket, bytes, group);
}

/// The record is too long, or comes while this machine has no room for it: the next one may go out.
bool ConcernsThisRecordAlone(const std::error_code& error)
{
    return error == std::errc::message_size || IsPassing(error);
}

}  // namespace

void Multicast::OpenGroup(const std::string& groupAddress, std::int32_t port)
{
    const SocketAddress group = CheckedGroup(groupAddress, port);
    OpenFor(group);
    closed_ = false;
}

void Multicast::CloseGroup()
{
    closed_ = true;
    socket_.Close();
    gated_.Drop();
}

void Multicast::SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                            std::int32_t port)
{
    const SocketAddress group = CheckedGroup(groupAddress, port);
    if (closed_)
        throw Failure(failure::kWrongProtocolOrState, "The multicast group is closed");
    if (!socket_.IsOpen() || family_ != group.Family())
        OpenFor(group);
    if (Send(socket_, bytes, group))
        return;
    const auto error = LastError();
    const std::string what = "Cannot send a record to " + group.Text();
    if (ConcernsThisRecordAlone(error))
        throw SocketFailure(error, what);
    Report(error, what);
}

void Multicast::OpenFor(const SocketAddress& group)
{
    FileDescriptor socket = OpenSocket(group.Family(), SOCK_DGRAM);
    const auto error = LastError();
    if (!socket.IsOpen())
        throw SocketFailure(error, "Cannot open multicast group " + group.Text());
    StayOnThisNetwork(socket, group.Family());
    socket_ = std::move(socket);
    family_ = group.Family();
}

void Multicast::Report(const std::error_code& error, const std::string& what)
{
    gated_.Post([this, reason = SocketFailure(error, what)] {
        Raise(OnError, reason.Number(), reason.Description());
    });
}

}  // namespace platform::sockets
