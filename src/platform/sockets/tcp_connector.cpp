#include "platform/sockets/tcp_connector.h"

#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/sockets/open_socket.h"

namespace platform::sockets {
namespace {

int PendingError(const FileDescriptor& socket)
{
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(socket.Number(), SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

/// A connect to a free port of this machine can pick that very port as its own and meet itself.
bool IsConnectedToItself(const FileDescriptor& socket)
{
    return SocketAddress::OfSocket(socket.Number()).Text() == SocketAddress::OfPeer(socket.Number()).Text();
}

}  // namespace

TcpConnector::TcpConnector(EventGate& gate, EventLoop& loop, std::vector<SocketAddress> addresses,
                           Events events)
    : gate_(gate),
      loop_(loop),
      addresses_(std::move(addresses)),
      events_(std::move(events)),
      failure_(gate, loop)
{
    if (const int error = TryRemaining(0); error != 0)
        failure_.Post([this, error] { events_.failed(error, addresses_.back()); });
}

int TcpConnector::TryRemaining(int lastError)
{
    while (tried_ < addresses_.size()) {
        lastError = Try(addresses_[tried_++]);
        if (lastError == 0)
            return 0;
    }
    return lastError;
}

int TcpConnector::Try(const SocketAddress& address)
{
    writable_.reset();
    socket_ = OpenSocket(address.Family(), SOCK_STREAM);
    if (!socket_.IsOpen())
        return errno;
    if (::connect(socket_.Number(), address.Data(), address.Size()) != 0 && errno != EINPROGRESS)
        return errno;
    writable_ = std::make_unique<GatedWatch>(gate_, loop_, socket_, Readiness::kWritable,
                                             [this] { FinishAttempt(); });
    return 0;
}

void TcpConnector::FinishAttempt()
{
    int error = PendingError(socket_);
    if (error == 0 && IsConnectedToItself(socket_))
        error = ECONNREFUSED;
    writable_.reset();
    if (error == 0)
        events_.connected(std::move(socket_));
    else if (const int last = TryRemaining(error); last != 0)
        events_.failed(last, addresses_.back());
}

}  // namespace platform::sockets
