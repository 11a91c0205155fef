#include <algorithm>
#include <utility>

#include "platform/event_gate.h"
#include "platform/sockets/socket.h"
#include "platform/sockets/winsock.h"

/// What the sockets report to the control, and what becomes of it then.
namespace platform::sockets {
namespace {

/// Data that a peer sends is of no use to the program; beyond this it is dropped unread.
constexpr std::size_t kMostReceived = std::size_t{1} << 20;

Failure HostNotFound(const std::string& host)
{
    return {failure::kHostNotFound, "Host not found: " + host};
}

Failure CannotConnect(const std::error_code& error, const SocketAddress& address)
{
    return SocketFailure(error, "Cannot connect to " + address.Text());
}

Failure ConnectionLost(const std::error_code& error, std::uint64_t unsent)
{
    Failure lost = SocketFailure(error, "The connection is lost");
    if (unsent == 0)
        return lost;
    return {lost.Number(), lost.Description() + ", " + std::to_string(unsent) +
                               (unsent == 1 ? " byte" : " bytes") + " had not gone out"};
}

}  // namespace

std::unique_ptr<TcpConnector> Winsock::Calling(Addresses addresses)
{
    for (SocketAddress& address : addresses)
        address.SetPort(remotePort_);
    return std::make_unique<TcpConnector>(
        gate_, loop_, std::move(addresses),
        TcpConnector::Events{
            .connected = [this](FileDescriptor socket) { Connected(std::move(socket)); },
            .failed = [this](const std::error_code& error,
                             const SocketAddress& address) { Fail(CannotConnect(error, address)); }});
}

std::unique_ptr<TcpConnection> Winsock::Serving(FileDescriptor socket)
{
    return std::make_unique<TcpConnection>(
        gate_, loop_, std::make_unique<TcpStream>(loop_, std::move(socket), waitingInAll_),
        TcpConnection::Events{.arrived = [this](std::string_view bytes) { TakeArrived(bytes); },
                              .ended = [this] { Raise(OnClose); },
                              .drained = [this] { Raise(OnDrained); },
                              .broken = [this](const std::error_code& error) { Lose(error); },
                              .finished = [this] { Finished(); }});
}

void Winsock::CallFound(const Addresses& addresses)
{
    if (addresses.empty()) {
        Fail(HostNotFound(remoteHost_));
        return;
    }
    opened_ = Calling(addresses);
    OpenAs<TcpConnector>()->Start();
}

/// Datagrams do not tell which of several addresses is served: IPv4 is the likelier one.
void Winsock::TakeFoundTarget(const Addresses& addresses)
{
    UdpSocket& udp = *OpenAs<UdpSocket>();
    if (udp.HasTarget())
        return;
    if (addresses.empty()) {
        if (udp.OpenFor() == UdpSocket::Role::kCalling)
            Fail(HostNotFound(remoteHost_));
        return;
    }
    const auto found = std::ranges::find(addresses, AF_INET, &SocketAddress::Family);
    SocketAddress target = found != addresses.end() ? *found : addresses.front();
    target.SetPort(remotePort_);
    udp.SetTarget(target);
}

void Winsock::Connected(FileDescriptor socket)
{
    try {
        opened_ = Serving(std::move(socket));
    } catch (const Failure& reason) {
        Fail(reason);
        return;
    }
    Raise(OnConnect);
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
    if (OpenAs<UdpSocket>()->OpenFor() != UdpSocket::Role::kCalling) {
        remoteHost_ = sender.Host();
        remotePort_ = sender.Port();
    }
    TakeArrived(bytes);
}

void Winsock::Finished()
{
    Close();
    Raise(OnFinished);
}

void Winsock::Lose(const std::error_code& error)
{
    const TcpProgress progress = Progress();
    const Failure reason = ConnectionLost(error, progress.unsent);
    opened_ = Failed{};
    Raise(OnLost, progress);
    if (State() == kError)
        errors_.Report(reason);
}

void Winsock::Fail(const Failure& reason)
{
    opened_ = Failed{};
    errors_.Report(reason);
}

void Winsock::RaiseError(const Failure& reason)
{
    Raise(OnError, reason.Number(), reason.Description());
}

}  // namespace platform::sockets
