#include "platform/sockets/udp_socket.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <utility>

#include "platform/sockets/open_socket.h"
#include "platform/sockets/socket_error.h"

namespace platform::sockets {
namespace {

constexpr std::size_t kLongestDatagram = std::size_t{64} << 10;
constexpr std::size_t kMostReadAPass = 4 * kLongestDatagram;
constexpr int kDatagramsAPass = 16;

FileDescriptor OpenUdp(std::uint16_t port)
{
    FileDescriptor socket = OpenOnAllAddresses(SOCK_DGRAM, port);
    // Otherwise groups that any program on this machine has joined arrive here, our own records among them.
    SetOption(socket, IPPROTO_IP, IP_MULTICAST_ALL, 0);
    SetOption(socket, IPPROTO_IPV6, IPV6_MULTICAST_ALL, 0);
    SetOption(socket, SOL_SOCKET, SO_BROADCAST, 1);
    return socket;
}

}  // namespace

UdpSocket::UdpSocket(EventGate& gate, EventLoop& loop, std::uint16_t port, Arrived arrived)
    : socket_(OpenUdp(port)),
      family_(SocketAddress::OfSocket(socket_.Number()).Family()),
      arrived_(std::move(arrived)),
      readable_(gate, loop, socket_, Readiness::kReadable, [this] { Read(); })
{}

void UdpSocket::Send(std::string_view bytes, const SocketAddress& target)
{
    const SocketAddress address = family_ == AF_INET6 ? target.AsIPv6() : target;
    if (::sendto(socket_.Number(), bytes.data(), bytes.size(), 0, address.Data(), address.Size()) >= 0)
        return;
    const int error = errno;
    throw SocketFailure(error, "Cannot send a record to " + target.Text());
}

void UdpSocket::Read()
{
    std::array<char, kMostReadAPass> buffer;
    std::size_t size = 0;
    SocketAddress sender;
    int datagrams = 0;
    while (datagrams < kDatagramsAPass && buffer.size() - size >= kLongestDatagram) {
        sockaddr_in6 address{};
        socklen_t addressSize = sizeof address;
        auto* const from = reinterpret_cast<sockaddr*>(&address);
        const ssize_t count =
            ::recvfrom(socket_.Number(), buffer.data() + size, kLongestDatagram, 0, from, &addressSize);
        if (count < 0)
            break;
        sender = SocketAddress(from, addressSize);
        size += static_cast<std::size_t>(count);
        ++datagrams;
    }
    if (datagrams > 0)
        arrived_({buffer.data(), size}, sender);
}

}  // namespace platform::sockets
