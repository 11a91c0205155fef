#include "record/wire.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <vector>

#include "platform/sockets/socket_address.h"

namespace {

using platform::sockets::SocketAddress;

SocketAddress Address(const std::string& digits, std::uint16_t port)
{
    SocketAddress address = platform::sockets::AddressFromText(digits).value();
    address.SetPort(port);
    return address;
}

}  // namespace

Wire::Wire(int socket) : socket_(socket)
{
    EXPECT_TRUE(socket_.IsOpen());
    const timeval longest{.tv_sec = 30, .tv_usec = 0};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest);
    ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &longest, sizeof longest);
}

Wire Wire::ConnectTo(std::uint16_t port)
{
    Wire wire(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const SocketAddress address = Address("127.0.0.1", port);
    EXPECT_EQ(0, ::connect(wire.socket_.Number(), address.Data(), address.Size()));
    return wire;
}

Wire Wire::Listening(std::uint16_t port)
{
    Wire wire(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    ::setsockopt(wire.socket_.Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const SocketAddress address = Address("127.0.0.1", port);
    EXPECT_EQ(0, ::bind(wire.socket_.Number(), address.Data(), address.Size()));
    EXPECT_EQ(0, ::listen(wire.socket_.Number(), 8));
    return wire;
}

Wire Wire::Datagrams()
{
    Wire wire(::socket(AF_INET6, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    const SocketAddress any = SocketAddress::Any(AF_INET6);
    EXPECT_EQ(0, ::bind(wire.socket_.Number(), any.Data(), any.Size()));
    return wire;
}

Wire Wire::Accept() const
{
    return Wire(::accept4(socket_.Number(), nullptr, nullptr, SOCK_CLOEXEC));
}

std::uint16_t Wire::Port() const
{
    return SocketAddress::OfSocket(socket_.Number()).Port();
}

bool Wire::Send(const std::string& bytes) const
{
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count =
            ::send(socket_.Number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::size_t Wire::SendUntilFull(std::size_t most) const
{
    constexpr int kPatience = 500;  // milliseconds
    const std::string piece(std::size_t{1} << 16, 'x');
    std::size_t sent = 0;
    pollfd writable{.fd = socket_.Number(), .events = POLLOUT, .revents = 0};
    while (sent < most && ::poll(&writable, 1, kPatience) == 1) {
        const ssize_t count =
            ::send(socket_.Number(), piece.data(), piece.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        sent += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return sent;
}

void Wire::SendTo(const std::string& address, std::uint16_t port, const std::string& bytes) const
{
    const SocketAddress target = Address(address, port).AsIPv6();
    EXPECT_EQ(bytes.size(),
              ::sendto(socket_.Number(), bytes.data(), bytes.size(), 0, target.Data(), target.Size()));
}

void Wire::ConnectToWhoeverSends() const
{
    sockaddr_in6 sender{};
    socklen_t size = sizeof sender;
    char byte = 0;
    EXPECT_LE(0, ::recvfrom(socket_.Number(), &byte, 1, 0, reinterpret_cast<sockaddr*>(&sender), &size));
    EXPECT_EQ(0, ::connect(socket_.Number(), reinterpret_cast<const sockaddr*>(&sender), size));
}

std::string Wire::Receive(std::size_t bytes) const
{
    std::string received;
    std::vector<char> buffer(std::size_t{1} << 16);
    while (received.size() < bytes) {
        const ssize_t count =
            ::recv(socket_.Number(), buffer.data(), std::min(buffer.size(), bytes - received.size()), 0);
        if (count <= 0)
            break;
        received.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return received;
}

void Wire::EndSending() const
{
    ::shutdown(socket_.Number(), SHUT_WR);
}

void Wire::Reset()
{
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket_.Number(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket_.Close();
}
