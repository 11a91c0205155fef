#include "platform/sockets/udp_socket.h"

#include <sys/socket.h>

#include <array>
#include <utility>

#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

constexpr std::size_t kLongestDatagram = std::size_t{64} << 10;
constexpr std::size_t kMostReadAPass = 4 * kLongestDatagram;
constexpr int kDatagramsAPass = 16;

FileDescriptor OpenUdp(std::uint16_t port)
{
    FileDescriptor socket = OpenOnAllAddresses(port, SOCK_DGRAM, Sharing::kYes);
    // Otherwise groups that any program on this machine has joined arrive here, our own records among them.
    SetOption(socket, IPPROTO_IP, IP_MULTICAST_ALL, 0);
    SetOption(socket, IPPROTO_IPV6, IPV6_MULTICAST_ALL, 0);
    SetOption(socket, SOL_SOCKET, SO_BROADCAST, 1);
    return socket;
}

struct Datagram {
    std::size_t bytes = 0;
    SocketAddress sender;
};

std::optional<Datagram> Take(const FileDescriptor& socket, char* buffer)
{
    sockaddr_in6 address{};
    socklen_t size = sizeof address;
    auto* const from = reinterpret_cast<sockaddr*>(&address);
    const ssize_t count = ::recvfrom(socket.Number(), buffer, kLongestDatagram, 0, from, &size);
    if (count < 0)
        return std::nullopt;
    return Datagram{static_cast<std::size_t>(count), SocketAddress(from, size)};
}

}  // namespace

UdpSocket::UdpSocket(EventGate& gate, EventLoop& loop, Role role, std::uint16_t port, Arrived arrived)
    : role_(role),
      socket_(OpenUdp(port)),
      family_(SocketAddress::OfSocket(socket_.Number()).Family()),
      port_(SocketAddress::OfSocket(socket_.Number()).Port()),
      arrived_(std::move(arrived)),
      readable_(gate, loop, socket_, Readiness::kReadable, [this] { Read(); })
{}

void UdpSocket::SetTarget(const SocketAddress& target)
{
    if (role_ == Role::kCalling || !IsItself(target))
        target_ = family_ == AF_INET6 ? target.AsIPv6() : target;
}

void UdpSocket::Send(std::string_view bytes)
{
    if (::sendto(socket_.Number(), bytes.data(), bytes.size(), 0, target_->Data(), target_->Size()) >= 0)
        return;
    const auto error = LastError();
    throw SocketFailure(error, "Cannot send a record to " + target_->Text());
}

void UdpSocket::Read()
{
    std::array<char, kMostReadAPass> buffer;
    std::size_t size = 0;
    std::optional<SocketAddress> sender;
    for (int i = 0; i < kDatagramsAPass && buffer.size() - size >= kLongestDatagram; ++i) {
        const auto datagram = Take(socket_, buffer.data() + size);
        if (!datagram && i == 0)
            readable_.Rest();
        if (!datagram)
            break;
        if (IsItself(datagram->sender))
            continue;
        sender = datagram->sender;
        size += datagram->bytes;
    }
    if (!sender)
        return;
    if (role_ != Role::kCalling)
        SetTarget(*sender);
    arrived_({buffer.data(), size}, *sender);
}

bool UdpSocket::IsItself(const SocketAddress& address) const
{
    return address.Port() == port_ && address.IsOfThisMachine();
}

}  // namespace platform::sockets
