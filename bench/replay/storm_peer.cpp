#include "replay/storm_peer.h"

#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/posix/file_descriptor.h"
#include "platform/sockets/socket_address.h"

namespace bench {
namespace {

using platform::FileDescriptor;

FileDescriptor ListeningAt(std::uint16_t port)
{
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    ::setsockopt(socket.Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const timeval wait{.tv_sec = 0, .tv_usec = 100'000};
    ::setsockopt(socket.Number(), SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
    auto address = platform::sockets::SocketAddress::Any(AF_INET);
    address.SetPort(port);
    if (::bind(socket.Number(), address.Data(), address.Size()) != 0 ||
        ::listen(socket.Number(), SOMAXCONN) != 0)
        throw std::system_error(errno, std::generic_category(), "listen");
    return socket;
}

void Reset(FileDescriptor connection)
{
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(connection.Number(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

}  // namespace

StormPeer::StormPeer(std::uint16_t port, Manner manner)
    : manner_(manner), thread_([this, port] { Serve(port); })
{}

StormPeer::~StormPeer()
{
    stopping_ = true;
    thread_.join();
}

void StormPeer::Serve(std::uint16_t port)
{
    const FileDescriptor socket = ListeningAt(port);
    std::vector<FileDescriptor> connections;
    while (!stopping_) {
        FileDescriptor connection(::accept4(socket.Number(), nullptr, nullptr, SOCK_CLOEXEC));
        if (!connection.IsOpen())
            continue;
        if (manner_ == Manner::kResets) {
            Reset(std::move(connection));
        } else {
            connections.push_back(std::move(connection));
            ++kept_;
        }
    }
}

}  // namespace bench
