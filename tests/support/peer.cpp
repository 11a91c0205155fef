#include "support/peer.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "platform/sockets/socket.h"

namespace {

using platform::FileDescriptor;
using platform::sockets::AddressFromText;
using platform::sockets::OpenSocket;
using platform::sockets::SetOption;
using platform::sockets::SocketAddress;

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

/// A connection, or none where nobody listens.
FileDescriptor Connected(const SocketAddress& target)
{
    FileDescriptor socket(::socket(target.Family(), SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (::connect(socket.Number(), target.Data(), target.Size()) != 0)
        return {};
    ::fcntl(socket.Number(), F_SETFL, O_NONBLOCK);
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
    FileDescriptor socket;
    EXPECT_TRUE(loop.WaitFor([&] {
        socket = Connected(target);
        return socket.IsOpen();
    })) << "nobody listens on port "
        << port;
    return Peer(loop, std::move(socket));
}

bool Peer::IsRefused(std::uint16_t port)
{
    return !Connected(AddressOf("127.0.0.1", port)).IsOpen();
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

std::uint16_t Peer::Port() const
{
    return SocketAddress::OfSocket(socket_.Number()).Port();
}

void Peer::KeepOnly(int bytes)
{
    SetOption(socket_, SOL_SOCKET, SO_RCVBUF, bytes);
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

std::vector<std::string> Peer::TakeConnections()
{
    std::vector<std::string> contents;
    pollfd waiting{.fd = socket_.Number(), .events = POLLIN, .revents = 0};
    while (::poll(&waiting, 1, 0) == 1)
        contents.push_back(Accepted().ReceiveAll());
    return contents;
}

void Peer::Send(std::string_view bytes)
{
    bool isBroken = false;
    EXPECT_TRUE(loop_->WaitFor([&] {
        const ssize_t sent = ::send(socket_.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
        isBroken = sent < 0 && errno != EAGAIN;
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(sent, 0)));
        return isBroken || bytes.empty();
    }));
    EXPECT_FALSE(isBroken) << std::strerror(errno);
}

std::size_t Peer::SendUntilFull(std::size_t most)
{
    constexpr int kPatience = 200;  // milliseconds
    const std::string piece(std::size_t{1} << 16, 'x');
    std::size_t sent = 0;
    pollfd writable{.fd = socket_.Number(), .events = POLLOUT, .revents = 0};
    while (sent < most && ::poll(&writable, 1, kPatience) == 1) {
        const ssize_t count = ::send(socket_.Number(), piece.data(), piece.size(), MSG_NOSIGNAL);
        sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return sent;
}

void Peer::SendTo(std::uint16_t port, const std::string& bytes, const std::string& address)
{
    const SocketAddress target = AddressOf(address, port);
    EXPECT_EQ(static_cast<ssize_t>(bytes.size()),
              ::sendto(socket_.Number(), bytes.data(), bytes.size(), 0, target.Data(), target.Size()));
}

void Peer::AnswerWhoSends()
{
    EXPECT_TRUE(loop_->WaitFor([&] { return HasDatagram(); }));
    sockaddr_storage sender{};
    socklen_t size = sizeof sender;
    char first = 0;
    ::recvfrom(socket_.Number(), &first, 1, 0, reinterpret_cast<sockaddr*>(&sender), &size);
    EXPECT_EQ(0, ::connect(socket_.Number(), reinterpret_cast<const sockaddr*>(&sender), size));
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

std::vector<std::string> Peer::TakeDatagrams()
{
    std::vector<std::string> datagrams;
    while (HasDatagram())
        datagrams.push_back(ReceiveDatagram().value());
    return datagrams;
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
    platform::sockets::ResetOnClose(socket_);
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
