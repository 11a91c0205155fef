#include "replay/receiver.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "platform/sockets/socket_address.h"

namespace bench {
namespace {

using platform::FileDescriptor;
using platform::sockets::SocketAddress;

constexpr std::size_t kLongestRead = std::size_t{64} << 10;

void Require(bool succeeded, const char* what)
{
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

/// Reads and accepts wait no longer than this before they look whether to stop.
void LimitWaits(const FileDescriptor& socket)
{
    const timeval limit{.tv_sec = 0, .tv_usec = 100'000};
    ::setsockopt(socket.Number(), SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

FileDescriptor OpenFor(Protocol protocol)
{
    FileDescriptor socket(
        ::socket(AF_INET, (protocol == Protocol::kTcp ? SOCK_STREAM : SOCK_DGRAM) | SOCK_CLOEXEC, 0));
    const SocketAddress any = SocketAddress::Any(AF_INET);
    Require(::bind(socket.Number(), any.Data(), any.Size()) == 0, "bind");
    LimitWaits(socket);
    if (protocol == Protocol::kTcp)
        Require(::listen(socket.Number(), SOMAXCONN) == 0, "listen");
    if (protocol == Protocol::kMulticast) {
        ip_mreqn membership{};
        membership.imr_multiaddr = reinterpret_cast<const sockaddr_in*>(
                                       platform::sockets::AddressFromText(AddressFor(protocol))->Data())
                                       ->sin_addr;
        Require(
            ::setsockopt(socket.Number(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &membership, sizeof membership) == 0,
            "join the group");
    }
    return socket;
}

}  // namespace

std::string AddressFor(Protocol protocol)
{
    return protocol == Protocol::kMulticast ? "239.1.2.3" : "127.0.0.1";
}

Receiver::Receiver(Protocol protocol, std::size_t recordSize)
    : recordSize_(recordSize),
      socket_(OpenFor(protocol)),
      thread_([this, protocol] { protocol == Protocol::kTcp ? ReceiveStreams() : ReceiveDatagrams(); })
{}

Receiver::~Receiver()
{
    static_cast<void>(Stop());
}

std::uint16_t Receiver::Port() const
{
    return SocketAddress::OfSocket(socket_.Number()).Port();
}

Receiver::Arrivals Receiver::Stop()
{
    stopping_ = true;
    if (thread_.joinable())
        thread_.join();
    return std::move(arrivals_);
}

void Receiver::ReceiveDatagrams()
{
    std::array<char, kLongestRead> buffer;
    while (!stopping_)
        if (::recv(socket_.Number(), buffer.data(), buffer.size(), 0) == static_cast<ssize_t>(recordSize_))
            Note();
}

void Receiver::ReceiveStreams()
{
    while (!stopping_) {
        const FileDescriptor stream(::accept4(socket_.Number(), nullptr, nullptr, SOCK_CLOEXEC));
        if (stream.IsOpen())
            ReceiveStream(stream);
    }
}

void Receiver::ReceiveStream(const FileDescriptor& stream)
{
    LimitWaits(stream);
    std::array<char, kLongestRead> buffer;
    std::size_t unaccounted = 0;
    while (!stopping_) {
        const ssize_t size = ::recv(stream.Number(), buffer.data(), buffer.size(), 0);
        if (size == 0 || (size < 0 && errno != EAGAIN))
            return;
        for (unaccounted += size > 0 ? static_cast<std::size_t>(size) : 0; unaccounted >= recordSize_;
             unaccounted -= recordSize_)
            Note();
    }
}

void Receiver::Note()
{
    arrivals_.push_back(std::chrono::steady_clock::now());
    ++count_;
}

}  // namespace bench
