#include "platform/sockets/tcp_opening.h"

#include <sys/socket.h>

#include <cerrno>
#include <string>
#include <utility>

#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

bool HasPeer(const FileDescriptor& socket)
{
    return SocketAddress::OfPeer(socket.Number()).Family() != AF_UNSPEC;
}

/// A connect to a free port of this machine can pick that very port as its own and meet itself.
bool IsConnectedToItself(const FileDescriptor& socket)
{
    return SocketAddress::OfSocket(socket.Number()).Text() == SocketAddress::OfPeer(socket.Number()).Text();
}

FileDescriptor OpenListening(std::uint16_t port)
{
    FileDescriptor socket = OpenOnAllAddresses(port, SOCK_STREAM, Sharing::kYes);
    if (::listen(socket.Number(), SOMAXCONN) == 0)
        return socket;
    const auto error = LastError();
    throw SocketFailure(error, "Cannot listen on port " + std::to_string(port));
}

/// All else concerns one peer, which was gone before it was taken and the like: the next one may be fine.
bool ConcernsTheListener(const std::error_code& error)
{
    switch (error.value()) {
        case EMFILE:
        case ENFILE:
        case ENOBUFS:
        case ENOMEM:
        case EBADF:
        case EINVAL:
            return true;
        default:
            return false;
    }
}

}  // namespace

TcpConnector::TcpConnector(EventGate& gate, EventLoop& loop, std::vector<SocketAddress> addresses,
                           Events events)
    : gate_(gate),
      loop_(loop),
      addresses_(std::move(addresses)),
      events_(std::move(events)),
      gated_(gate, loop)
{}

void TcpConnector::Start()
{
    if (const auto error = TryRemaining())
        Fail(error);
}

void TcpConnector::StartQuietly()
{
    if (const auto error = TryRemaining())
        gated_.Post([this, error] { Fail(error); });
}

std::error_code TcpConnector::TryRemaining()
{
    std::error_code error;
    while (tried_ < addresses_.size()) {
        error = Try(addresses_[tried_++]);
        if (!error)
            break;
    }
    return error;
}

std::error_code TcpConnector::Try(const SocketAddress& address)
{
    writable_.reset();
    socket_ = OpenSocket(address.Family(), SOCK_STREAM);
    if (!socket_.IsOpen())
        return LastError();
    if (::connect(socket_.Number(), address.Data(), address.Size()) != 0 && errno != EINPROGRESS)
        return LastError();
    writable_.emplace(gate_, loop_, socket_, Readiness::kWritable, [this] { FinishAttempt(); });
    return {};
}

void TcpConnector::FinishAttempt()
{
    std::error_code error = PendingError(socket_);
    if (!error && !HasPeer(socket_)) {
        writable_->Rest();
        return;
    }
    if (!error && IsConnectedToItself(socket_))
        error = make_error_code(std::errc::connection_refused);
    writable_.reset();
    if (!error) {
        events_.connected(std::move(socket_));
        return;
    }
    if (tried_ < addresses_.size())
        error = TryRemaining();
    if (error)
        Fail(error);
}

TcpListener::TcpListener(EventGate& gate, EventLoop& loop, std::uint16_t port, Events events)
    : socket_(OpenListening(port)),
      events_(std::move(events)),
      readable_(gate, loop, socket_, Readiness::kReadable, [this] { AcceptOne(); })
{}

std::uint16_t TcpListener::Port() const
{
    return SocketAddress::OfSocket(socket_.Number()).Port();
}

void TcpListener::AcceptOne()
{
    FileDescriptor peer(::accept4(socket_.Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (peer.IsOpen())
        events_.announced(std::move(peer));
    else if (const auto error = LastError(); ConcernsTheListener(error))
        events_.failed(error);
    else
        readable_.Rest();
}

}  // namespace platform::sockets
