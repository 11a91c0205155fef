#include "sockets/peer.h"

#include <gtest/gtest.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <vector>

#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 20;

SocketAddress AddressOf(const std::string& host, std::uint16_t port)
{
    SocketAddress address = AddressFromText(host).value();
    address.SetPort(port);
    return address;
}

FileDescriptor OpenBound(int type, const std::string& host, std::uint16_t port, bool shares)
{
    const SocketAddress address = AddressOf(host, port);
    FileDescriptor socket = OpenSocket(address.Family(), type);
    if (shares)
        SetOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    EXPECT_EQ(0, ::bind(socket.Number(), address.Data(), address.Size())) << std::strerror(errno);
    return socket;
}

}  // namespace

std::size_t OpenDescriptors()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

Peer Peer::ConnectTo(TestLoop& loop, std::uint16_t port, const std::string& address)
{
    const SocketAddress target = AddressOf(address, port);
    FileDescriptor socket = OpenSocket(target.Family(), SOCK_STREAM);
    const int result = ::connect(socket.Number(), target.Data(), target.Size());
    EXPECT_TRUE(result == 0 || errno == EINPROGRESS) << std::strerror(errno);
    return Peer(loop, std::move(socket));
}

Peer Peer::Listening(TestLoop& loop, const std::string& address, std::uint16_t port)
{
    FileDescriptor socket = OpenBound(SOCK_STREAM, address, port, port != 0);
    EXPECT_EQ(0, ::listen(socket.Number(), SOMAXCONN));
    return Peer(loop, std::move(socket));
}

Peer Peer::Datagrams(TestLoop& loop, const std::string& address, std::uint16_t port, bool shares)
{
    return Peer(loop, OpenBound(SOCK_DGRAM, address, port, shares));
}

Peer Peer::InGroup(TestLoop& loop, const std::string& group, std::uint16_t port, const std::string& interface)
{
    const SocketAddress address = AddressFromText(group).value();
    const bool isIPv4 = address.Family() == AF_INET;
    FileDescriptor socket = OpenBound(SOCK_DGRAM, isIPv4 ? "0.0.0.0" : "::", port, true);
    group_req request{};
    request.gr_interface = ::if_nametoindex(interface.c_str());
    std::memcpy(&request.gr_group, address.Data(), address.Size());
    const int level = isIPv4 ? IPPROTO_IP : IPPROTO_IPV6;
    EXPECT_EQ(0, ::setsockopt(socket.Number(), level, MCAST_JOIN_GROUP, &request, sizeof request))
        << std::strerror(errno);
    return Peer(loop, std::move(socket));
}

Peer Peer::Accepted()
{
    FileDescriptor connection;
    EXPECT_TRUE(loop_->WaitFor([&] {
        connection =
            FileDescriptor(::accept4(socket_.Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        return connection.IsOpen();
    }));
    return Peer(*loop_, std::move(connection));
}

void Peer::Send(const std::string& bytes)
{
    EXPECT_EQ(static_cast<ssize_t>(bytes.size()),
              ::send(socket_.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL));
}

void Peer::SendBlocking(std::string_view bytes)
{
    while (!bytes.empty()) {
        pollfd writable{.fd = socket_.Number(), .events = POLLOUT, .revents = 0};
        ::poll(&writable, 1, -1);
        const ssize_t sent = ::send(socket_.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN)
            return;
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
    }
}

void Peer::SendTo(std::uint16_t port, const std::string& bytes, const std::string& address)
{
    const SocketAddress target = AddressOf(address, port);
    EXPECT_EQ(static_cast<ssize_t>(bytes.size()),
              ::sendto(socket_.Number(), bytes.data(), bytes.size(), 0, target.Data(), target.Size()));
}

std::string Peer::Receive(std::size_t bytes)
{
    EXPECT_TRUE(loop_->WaitFor([&] {
        TakeAvailable();
        return received_.size() >= bytes || ended_;
    })) << "after "
        << received_.size() << " bytes";
    return std::exchange(received_, {});
}

std::optional<std::string> Peer::ReceiveDatagram()
{
    if (!loop_->WaitFor([&] { return HasDatagram(); }))
        return std::nullopt;
    std::string datagram(kMostAtOnce, '\0');
    datagram.resize(static_cast<std::size_t>(::recv(socket_.Number(), datagram.data(), datagram.size(), 0)));
    return datagram;
}

bool Peer::HasDatagram()
{
    char first = 0;
    return ::recv(socket_.Number(), &first, 1, MSG_PEEK) >= 0;
}

void Peer::EndSending()
{
    ::shutdown(socket_.Number(), SHUT_WR);
}

void Peer::Reset()
{
    ResetOnClose(socket_);
    socket_.Close();
}

void Peer::TakeAvailable()
{
    std::vector<char> buffer(kMostAtOnce);
    const ssize_t count = ::recv(socket_.Number(), buffer.data(), buffer.size(), 0);
    if (count > 0)
        received_.append(buffer.data(), static_cast<std::size_t>(count));
    else if (count == 0 || (errno != EAGAIN && errno != EINTR))
        ended_ = true;
    if (count < 0 && errno == ECONNRESET)
        received_ += "reset";
}

}  // namespace platform::sockets
