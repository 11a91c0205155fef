#include "fuzz_window/crowd.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <string>
#include <utility>

#include "fuzz_window/stage.h"
#include "platform/sockets/open_socket.h"
#include "platform/sockets/socket_address.h"

using platform::FileDescriptor;
using platform::sockets::OpenSocket;
using platform::sockets::SocketAddress;

namespace {

SocketAddress ProgramAddress()
{
    SocketAddress address = platform::sockets::AddressFromText("127.0.0.1").value();
    address.SetPort(stage::kPort);
    return address;
}

void Reset(FileDescriptor& connection)
{
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(connection.Number(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    connection.Close();
}

}  // namespace

void Crowd::Change(Random& random)
{
    constexpr Manner kManners[] = {Manner::kStall, Manner::kRead, Manner::kFlood, Manner::kEnd,
                                   Manner::kReset};
    switch (random.Below(6)) {
        case 0:
            return Listen();
        case 1:
            return listener_.Close();
        case 2:
            return Connect(random.OneIn(2) ? 1 : 300);
        case 3:
            return SendDatagrams();
        case 4:
            return Leave();
        default:
            manner_ = random.Of(kManners);
    }
}

void Crowd::Step()
{
    Accept();
    std::erase_if(connections_, [this](FileDescriptor& connection) { return !Behave(connection); });
}

void Crowd::Leave()
{
    listener_.Close();
    for (FileDescriptor& connection : connections_)
        Reset(connection);
    connections_.clear();
}

/// In the listening role the program finds its port taken then.
void Crowd::Listen()
{
    const SocketAddress address = ProgramAddress();
    FileDescriptor socket = OpenSocket(AF_INET, SOCK_STREAM);
    platform::sockets::SetOption(socket, SOL_SOCKET, SO_REUSEADDR, 1);
    if (::bind(socket.Number(), address.Data(), address.Size()) == 0 &&
        ::listen(socket.Number(), SOMAXCONN) == 0)
        listener_ = std::move(socket);
}

void Crowd::Connect(int count)
{
    const SocketAddress address = ProgramAddress();
    for (; count > 0; --count) {
        connections_.push_back(OpenSocket(AF_INET, SOCK_STREAM));
        ::connect(connections_.back().Number(), address.Data(), address.Size());
    }
}

void Crowd::SendDatagrams() const
{
    const SocketAddress address = ProgramAddress();
    const FileDescriptor socket = OpenSocket(AF_INET, SOCK_DGRAM);
    for (int count = 0; count < 100; ++count)
        ::sendto(socket.Number(), "hello", 5, 0, address.Data(), address.Size());
}

void Crowd::Accept()
{
    while (listener_.IsOpen()) {
        FileDescriptor connection(
            ::accept4(listener_.Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!connection.IsOpen())
            return;
        connections_.push_back(std::move(connection));
    }
}

/// False for a connection that has come to its end.
bool Crowd::Behave(FileDescriptor& connection) const
{
    static const std::string kFlood(std::size_t{64} << 10, 'x');
    std::string taken(std::size_t{64} << 10, '\0');
    switch (manner_) {
        case Manner::kStall:
            return true;
        case Manner::kReset:
            return Reset(connection), false;
        case Manner::kEnd:
            return false;
        case Manner::kFlood:
            ::send(connection.Number(), kFlood.data(), kFlood.size(), MSG_NOSIGNAL);
            [[fallthrough]];
        case Manner::kRead:
            return ::recv(connection.Number(), taken.data(), taken.size(), 0) != 0;
    }
    return false;
}
