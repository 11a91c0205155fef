#include "fuzz_window/crowd.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <utility>

#include "fuzz_window/stage.h"
#include "platform/sockets/socket.h"
#include "platform/sockets/socket_address.h"

using platform::FileDescriptor;
using namespace platform::sockets;

namespace {

SocketAddress ProgramAddress()
{
    SocketAddress address = AddressFromText("127.0.0.1").value();
    address.SetPort(stage::kPort);
    return address;
}

}  // namespace

void Crowd::Change(Random& random)
{
    constexpr Manner kManners[] = {Manner::kStall, Manner::kFlood, Manner::kEnd, Manner::kReset};
    switch (random.Below(5)) {
        case 0:
            return Listen();
        case 1:
            return Connect(random.OneIn(2) ? 1 : 300);
        case 2:
            return SendDatagrams();
        case 3:
            return Leave();
        default:
            manner_ = random.Of(kManners);
    }
}

void Crowd::Step()
{
    while (listener_.IsOpen()) {
        FileDescriptor peer(::accept4(listener_.Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
        if (!peer.IsOpen())
            break;
        connections_.push_back(std::move(peer));
    }
    std::erase_if(connections_, [this](const FileDescriptor& connection) { return !Stays(connection); });
}

void Crowd::Leave()
{
    listener_.Close();
    for (const FileDescriptor& connection : connections_)
        ResetOnClose(connection);
    connections_.clear();
}

/// In the listening role the program finds its port taken then.
void Crowd::Listen()
{
    const SocketAddress address = ProgramAddress();
    listener_ = OpenSocket(AF_INET, SOCK_STREAM);
    SetOption(listener_, SOL_SOCKET, SO_REUSEADDR, 1);
    if (::bind(listener_.Number(), address.Data(), address.Size()) != 0 ||
        ::listen(listener_.Number(), SOMAXCONN) != 0)
        listener_.Close();
}

void Crowd::Connect(int count)
{
    const SocketAddress address = ProgramAddress();
    for (; count > 0; --count) {
        connections_.push_back(OpenSocket(AF_INET, SOCK_STREAM));
        (void)::connect(connections_.back().Number(), address.Data(), address.Size());
    }
}

void Crowd::SendDatagrams()
{
    const SocketAddress address = ProgramAddress();
    const FileDescriptor socket = OpenSocket(AF_INET, SOCK_DGRAM);
    for (int count = 0; count < 100; ++count)
        ::sendto(socket.Number(), "hello", 5, 0, address.Data(), address.Size());
}

bool Crowd::Stays(const FileDescriptor& connection) const
{
    std::array<char, std::size_t{64} << 10> bytes{};
    switch (manner_) {
        case Manner::kFlood:
            ::send(connection.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            return ::recv(connection.Number(), bytes.data(), bytes.size(), 0) != 0;
        case Manner::kEnd:
            return false;
        case Manner::kReset:
            ResetOnClose(connection);
            return false;
        default:
            return true;
    }
}
