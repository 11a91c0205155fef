#include <utility>

#include "platform/sockets/socket_error.h"
#include "platform/sockets/winsock.h"

// What the sockets report, and what becomes of the control then.
namespace platform::sockets {
namespace {

/// Data that a peer sends is of no use to the program; beyond this it is dropped unread.
constexpr std::size_t kMostReceived = std::size_t{1} << 20;

template <class Handler, class... Arguments>
void Raise(const Handler& handler, const Arguments&... arguments)
{
    if (handler)
        handler(arguments...);
}

}  // namespace

void Winsock::Connected(FileDescriptor socket)
{
    connector_.reset();
    Serve(std::move(socket));
    Raise(OnConnect);
}

void Winsock::Serve(FileDescriptor socket)
{
    connection_ = std::make_unique<TcpConnection>(
        gate_, loop_, std::make_unique<TcpStream>(loop_, std::move(socket), waitingInAll_),
        TcpConnection::Events{
            .arrived = [this](std::string_view bytes) { TakeArrived(bytes); },
            .ended = [this] { Raise(OnClose); },
            .broken = [this](int error) { Fail(SocketFailure(error, "The connection is lost")); }});
    state_ = kConnected;
}

void Winsock::Announce(FileDescriptor peer)
{
    struct Refusal {  // of a peer that was not accepted, also where the handler throws
        FileDescriptor& peer;
        ~Refusal() { peer.Close(); }
    };
    requestingPeer_ = std::move(peer);
    const Refusal refusal{requestingPeer_};
    Raise(OnConnectionRequest, ++lastRequest_);
}

void Winsock::TakeArrived(std::string_view bytes)
{
    if (received_.size() + bytes.size() > kMostReceived)
        received_.clear();
    received_.append(bytes);
    Raise(OnDataArrival, received_.size());
}

void Winsock::TakeDatagrams(std::string_view bytes, const SocketAddress& sender)
{
    if (state_ == kListening || state_ == kOpen) {
        target_ = sender;
        remoteHost_ = sender.Host();
        remotePort_ = sender.Port();
    }
    TakeArrived(bytes);
}

void Winsock::Fail(const Failure& reason)
{
    DropSockets();
    state_ = kError;
    Raise(OnError, reason.Number(), reason.Description());
}

void Winsock::DropSockets()
{
    connector_.reset();
    connection_.reset();
    listener_.reset();
    udp_.reset();
}

}  // namespace platform::sockets
