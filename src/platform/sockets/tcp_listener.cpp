#include "platform/sockets/tcp_listener.h"

#include <sys/socket.h>

#include <cerrno>
#include <string>
#include <utility>

#include "platform/sockets/open_socket.h"
#include "platform/sockets/socket_address.h"
#include "platform/sockets/socket_error.h"

namespace platform::sockets {
namespace {

FileDescriptor OpenListening(std::uint16_t port)
{
    FileDescriptor socket = OpenOnAllAddresses(SOCK_STREAM, port);
    if (::listen(socket.Number(), SOMAXCONN) != 0)
        throw SocketFailure(errno, "Cannot listen on port " + std::to_string(port));
    return socket;
}

/// All else concerns one peer, which was gone before it was taken and the like: the next one may be fine.
bool ConcernsTheListener(int error)
{
    switch (error) {
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
    else if (ConcernsTheListener(errno))
        events_.failed(errno);
}

}  // namespace platform::sockets
