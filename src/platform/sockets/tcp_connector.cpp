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

TcpConnector::TcpConnector(EventGate& gate, std::vector<SocketAddress> addresses, Events events)
    : gate_(gate), addresses_(std::move(addresses)), events_(std::move(events)), failure_(gate)
{
    TryRemaining(0);
}

void TcpConnector::TryRemaining(int lastError)
{
    while (tried_ < addresses_.size()) {
        lastError = Try(addresses_[tried_++]);
        if (lastError == 0)
            return;
    }
    failure_.Post([this, lastError] { events_.failed(lastError, addresses_.back()); });
}

int TcpConnector::Try(const SocketAddress& address)
{
    writable_.reset();
    socket_ = OpenSocket(address.Family(), SOCK_STREAM);
    if (!socket_.IsOpen())
        return errno;
    if (::connect(socket_.Number(), address.Data(), address.Size()) != 0 && errno != EINPROGRESS)
        return errno;
    writable_ =
        std::make_unique<GatedNotifier>(gate_, socket_, QSocketNotifier::Write, [this] { FinishAttempt(); });
    return 0;
}

void TcpConnector::FinishAttempt()
{
    int error = PendingError(socket_);
    if (error == 0 && IsConnectedToItself(socket_))
        error = ECONNREFUSED;
    writable_.reset();
    if (error != 0)
        TryRemaining(error);
    else
        events_.connected(std::move(socket_));
}

}  // namespace platform::sockets
