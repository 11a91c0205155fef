#include "platform/sockets/multicast.h"

#include <sys/socket.h>

#include <cerrno>
#include <span>

#include "platform/failure.h"
#include "platform/sockets/multicast_interface.h"
#include "platform/sockets/open_socket.h"
#include "platform/sockets/socket_error.h"

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

/// False with errno where the network refuses the bytes.
bool Send(const FileDescriptor& socket, std::span<const std::uint8_t> bytes, const SocketAddress& group)
{
    if (::sendto(socket.Number(), bytes.data(), bytes.size(), 0, group.Data(), group.Size()) >= 0)
        return true;
    const bool withoutRoute = errno == ENETUNREACH && group.Family() == AF_INET;
    return withoutRoute && SendThroughAnyInterface(socket, bytes, group);
}

/// The record is too long, or comes while this machine's own buffers are full: the next one may go out.
bool ConcernsThisRecordAlone(int error)
{
    return error == EMSGSIZE || error == EAGAIN || error == ENOBUFS;
}

}  // namespace

void Multicast::OpenGroup(const std::string& groupAddress, std::int32_t port)
{
    const SocketAddress group = CheckedGroup(groupAddress, port);
    closed_ = false;
    OpenFor(group);
}

void Multicast::CloseGroup()
{
    closed_ = true;
    socket_.Close();
    errors_.reset();
}

void Multicast::SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                            std::int32_t port)
{
    const SocketAddress group = CheckedGroup(groupAddress, port);
    if (closed_)
        throw Failure(failure::kWrongProtocolOrState, "The multicast group is closed");
    if (!socket_.IsOpen() || family_ != group.Family())
        OpenFor(group);
    if (!socket_.IsOpen())
        return;
    if (Send(socket_, bytes, group))
        return;
    const int error = errno;
    const std::string what = "Cannot send a record to " + group.Text();
    if (ConcernsThisRecordAlone(error))
        throw SocketFailure(error, what);
    Report(error, what);
}

/// A refusal is reported as an event.
void Multicast::OpenFor(const SocketAddress& group)
{
    family_ = group.Family();
    socket_ = OpenSocket(family_, SOCK_DGRAM);
    const int error = errno;
    if (socket_.IsOpen())
        StayOnThisNetwork(socket_, family_);
    else
        Report(error, "Cannot open multicast group " + group.Text());
}

void Multicast::Report(int error, const std::string& what)
{
    if (!errors_)
        errors_ = std::make_unique<GatedEvents>(gate_, loop_);
    errors_->Post([this, reason = SocketFailure(error, what)] {
        if (OnError)
            OnError(reason.Number(), reason.Description());
    });
}

}  // namespace platform::sockets
