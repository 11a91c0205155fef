#include "platform/sockets/winsock.h"

#include <algorithm>
#include <utility>

#include "platform/ansi_code_page.h"
#include "platform/conversions.h"
#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

constexpr std::chrono::seconds kLongestLinger{30};

/// Data that a peer sends is of no use to the program; beyond this it is dropped unread.
constexpr std::size_t kMostReceived = std::size_t{1} << 20;

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

SocketState StateOf(const UdpSocket& socket)
{
    switch (socket.OpenFor()) {
        case UdpSocket::Role::kListening:
            return SocketState::kListening;
        case UdpSocket::Role::kBound:
            return SocketState::kOpen;
        default:
            return socket.HasTarget() ? SocketState::kConnected : SocketState::kConnecting;
    }
}

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

template <class Handler, class... Arguments>
void Raise(const Handler& handler, const Arguments&... arguments)
{
    if (handler)
        handler(arguments...);
}

}  // namespace

Winsock::Winsock(EventGate& gate, EventLoop& loop, const RegionalFormats& formats)
    : gate_(gate),
      loop_(loop),
      formats_(formats),
      lookup_(gate, loop),
      errors_(gate, loop,
              [this](const Failure& reason) { Raise(OnError, reason.Number(), reason.Description()); }),
      lingering_(loop, kLongestLinger)
{}

Winsock::~Winsock() = default;

void Winsock::SetProtocol(Protocol protocol)
{
    RequireClosed("change its protocol");
    protocol_ = protocol;
}

void Winsock::SetRemoteHost(const std::string& host)
{
    remoteHost_ = WithoutBlanksAround(host);
}

void Winsock::SetRemotePort(std::int32_t port)
{
    remotePort_ = CheckedPort(port, 0);
}

void Winsock::SetLocalPort(std::int32_t port)
{
    localPort_ = CheckedPort(port, 0);
}

SocketState Winsock::State() const
{
    return std::visit(Overloaded{[](const Nothing&) { return kClosed; }, [](const Failed&) { return kError; },
                                 [](const LookingUp&) { return kConnecting; },
                                 [](const std::unique_ptr<TcpConnector>&) { return kConnecting; },
                                 [](const std::unique_ptr<TcpListener>&) { return kListening; },
                                 [](const std::unique_ptr<TcpConnection>&) { return kConnected; },
                                 [](const std::unique_ptr<UdpSocket>& socket) { return StateOf(*socket); }},
                      opened_);
}

void Winsock::Connect()
{
    RequireClosed("connect");
    if (remoteHost_.empty() || remotePort_ == 0)
        throw Failure(failure::kAddressNotAvailable, "Cannot connect without a remote host and port");
    if (protocol_ == Protocol::kUdp)
        OpenUdp(UdpSocket::Role::kCalling, 0);
    else
        ConnectTcp();
}

void Winsock::Connect(const std::string& host, const std::string& port)
{
    RequireClosed("connect");
    SetRemotePort(ToLong(port, formats_));
    SetRemoteHost(host);
    Connect();
}

void Winsock::Listen()
{
    RequireClosed("listen");
    if (protocol_ == Protocol::kUdp) {
        OpenUdp(UdpSocket::Role::kListening, localPort_);
        return;
    }
    opened_ = std::make_unique<TcpListener>(
        gate_, loop_, localPort_,
        TcpListener::Events{.announced = [this](FileDescriptor peer) { Announce(std::move(peer)); },
                            .failed =
                                [this](const std::error_code& error) {
                                    Fail(SocketFailure(error, "Cannot accept a peer"));
                                }});
}

void Winsock::Accept(RequestId request)
{
    RequireClosed("accept a peer");
    if (!requestingPeer_.IsOpen() || request != lastRequest_)
        throw Failure(failure::kWrongProtocolOrState,
                      "No peer waits with request " + std::to_string(request));
    opened_ = Serving(std::move(requestingPeer_));
}

void Winsock::Bind(const std::string& port)
{
    RequireClosed("bind a port");
    if (protocol_ != Protocol::kUdp)
        throw Failure(failure::kWrongProtocolOrState, "Only a UDP socket binds a port");
    SetLocalPort(ToLong(port, formats_));
    OpenUdp(UdpSocket::Role::kBound, localPort_);
}

void Winsock::SendData(const std::string& text)
{
    auto* const connection = Open<TcpConnection>();
    auto* const udp = Open<UdpSocket>();
    if (connection != nullptr && !connection->IsFinishing())
        connection->Send(ToAnsi(text));
    else if (udp != nullptr && udp->HasTarget())
        udp->Send(ToAnsi(text));
    else
        throw Failure(failure::kWrongProtocolOrState, "There is no peer to send to");
}

std::string Winsock::GetData()
{
    return std::exchange(received_, {});
}

void Winsock::Close()
{
    lookup_.Cancel();
    errors_.Drop();
    received_.clear();
    const Opened closed = std::exchange(opened_, Nothing{});
    if (const auto* const connection = std::get_if<std::unique_ptr<TcpConnection>>(&closed))
        lingering_.Add((*connection)->TakeStream());
}

std::uint16_t Winsock::LocalPort() const
{
    if (const auto* const listener = Open<TcpListener>())
        return listener->Port();
    const auto* const udp = Open<UdpSocket>();
    return udp != nullptr ? udp->Port() : localPort_;
}

std::size_t Winsock::WaitingBytes() const
{
    const auto* const connection = Open<TcpConnection>();
    return connection != nullptr ? connection->Stream().WaitingBytes() : 0;
}

TcpProgress Winsock::Progress() const
{
    const auto* const connection = Open<TcpConnection>();
    return connection != nullptr ? connection->Stream().Progress() : TcpProgress{};
}

void Winsock::Finish()
{
    auto* const connection = Open<TcpConnection>();
    if (connection == nullptr)
        throw Failure(failure::kWrongProtocolOrState, "There is no connection to finish");
    connection->Finish();
}

template <class Socket>
Socket* Winsock::Open() const
{
    const auto* const open = std::get_if<std::unique_ptr<Socket>>(&opened_);
    return open != nullptr ? open->get() : nullptr;
}

void Winsock::RequireClosed(const char* operation) const
{
    if (State() != kClosed)
        throw Failure(failure::kInvalidOperationAtCurrentState,
                      std::string("Only a closed socket can ") + operation);
}

void Winsock::ConnectTcp()
{
    const auto address = AddressFromText(remoteHost_);
    if (!address) {
        lookup_.Start(remoteHost_, [this](const Addresses& addresses) { CallFound(addresses); });
        opened_ = LookingUp{};
    } else {
        auto connector = Calling({*address});
        connector->StartQuietly();
        opened_ = std::move(connector);
    }
}

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

/// The target is the host and port that were set; a datagram from a peer replaces it.
void Winsock::OpenUdp(UdpSocket::Role role, std::uint16_t port)
{
    auto udp = std::make_unique<UdpSocket>(
        gate_, loop_, role, port,
        [this](std::string_view bytes, const SocketAddress& sender) { TakeDatagrams(bytes, sender); });
    const bool isTargetSet = !remoteHost_.empty() && remotePort_ != 0;
    if (auto address = isTargetSet ? AddressFromText(remoteHost_) : std::nullopt) {
        address->SetPort(remotePort_);
        udp->SetTarget(*address);
    } else if (isTargetSet) {
        lookup_.Start(remoteHost_, [this](const Addresses& addresses) { TakeFoundTarget(addresses); });
    }
    opened_ = std::move(udp);
}

// What the sockets report, and what becomes of the control then.

void Winsock::CallFound(const Addresses& addresses)
{
    if (addresses.empty()) {
        Fail(HostNotFound(remoteHost_));
        return;
    }
    opened_ = Calling(addresses);
    Open<TcpConnector>()->Start();
}

/// Datagrams do not tell which of several addresses is served: IPv4 is the likelier one.
void Winsock::TakeFoundTarget(const Addresses& addresses)
{
    UdpSocket& udp = *Open<UdpSocket>();
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
    if (Open<UdpSocket>()->OpenFor() != UdpSocket::Role::kCalling) {
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

}  // namespace platform::sockets
