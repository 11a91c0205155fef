#include "play/receivers.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace receivers {
namespace {

using platform::FileDescriptor;

constexpr int kLongest = 20'000;  // milliseconds

sockaddr_in AddressOf(std::uint16_t port, in_addr_t host = htonl(INADDR_LOOPBACK))
{
    return {.sin_family = AF_INET, .sin_port = htons(port), .sin_addr = {host}, .sin_zero = {}};
}

const sockaddr* Plain(const sockaddr_in& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

FileDescriptor Bound(int type, const sockaddr_in& address)
{
    FileDescriptor socket(::socket(AF_INET, type | SOCK_CLOEXEC, 0));
    const int on = 1;
    ::setsockopt(socket.Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    EXPECT_EQ(::bind(socket.Number(), Plain(address), sizeof address), 0) << errno;
    return socket;
}

bool IsReadable(const FileDescriptor& socket, int milliseconds)
{
    pollfd readable{.fd = socket.Number(), .events = POLLIN, .revents = 0};
    return ::poll(&readable, 1, milliseconds) > 0;
}

}  // namespace

Connection Connection::To(std::uint16_t port)
{
    const sockaddr_in address = AddressOf(port);
    for (int tries = 0; tries < kLongest; ++tries) {
        FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        if (::connect(socket.Number(), Plain(address), sizeof address) == 0)
            return Connection(std::move(socket));
        ::usleep(1000);
    }
    ADD_FAILURE() << "nobody listens on port " << port;
    return Connection(FileDescriptor());
}

std::string Connection::Read(std::size_t bytes)
{
    std::string read;
    std::array<char, 65536> buffer;
    while (read.size() < bytes) {
        if (!IsReadable(socket_, kLongest)) {
            ADD_FAILURE() << "nothing more comes after " << read.size() << " bytes";
            break;
        }
        const ssize_t count = ::recv(socket_.Number(), buffer.data(), buffer.size(), 0);
        if (count < 0)
            read += "(reset)";
        if (count <= 0)
            break;
        read.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return read;
}

std::string Connection::ReadAll()
{
    return Read(std::string::npos);
}

void Connection::Reset()
{
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(socket_.Number(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket_.Close();
}

Listener::Listener(std::uint16_t port, std::optional<int> bytesKept)
    : socket_(Bound(SOCK_STREAM, AddressOf(port)))
{
    if (bytesKept)
        ::setsockopt(socket_.Number(), SOL_SOCKET, SO_RCVBUF, &*bytesKept, sizeof *bytesKept);
    EXPECT_EQ(::listen(socket_.Number(), SOMAXCONN), 0);
}

Connection Listener::Accept()
{
    EXPECT_TRUE(IsReadable(socket_, kLongest)) << "nobody connects";
    return Connection(FileDescriptor(::accept4(socket_.Number(), nullptr, nullptr, SOCK_CLOEXEC)));
}

std::vector<std::string> Listener::TakeEnded()
{
    std::vector<std::string> contents;
    while (IsReadable(socket_, 0))
        contents.push_back(Accept().ReadAll());
    return contents;
}

Datagrams::Datagrams(std::uint16_t port, const std::string& group)
    : socket_(Bound(SOCK_DGRAM, AddressOf(port, group.empty() ? htonl(INADDR_LOOPBACK) : INADDR_ANY)))
{
    if (group.empty())
        return;
    ip_mreqn request{};
    request.imr_multiaddr.s_addr = ::inet_addr(group.c_str());
    request.imr_address.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::setsockopt(socket_.Number(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &request, sizeof request), 0);
}

void Datagrams::SendTo(std::uint16_t port, const std::string& bytes)
{
    const sockaddr_in address = AddressOf(port);
    ::sendto(socket_.Number(), bytes.data(), bytes.size(), 0, Plain(address), sizeof address);
}

std::vector<std::string> Datagrams::TakeAll()
{
    std::vector<std::string> all;
    std::array<char, 65536> buffer;
    while (IsReadable(socket_, 0)) {
        const ssize_t count = ::recv(socket_.Number(), buffer.data(), buffer.size(), 0);
        all.emplace_back(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return all;
}

}  // namespace receivers
