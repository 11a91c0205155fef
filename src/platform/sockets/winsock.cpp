#include "platform/sockets/winsock.h"

#include <utility>

#include "platform/ansi_code_page.h"
#include "platform/conversions.h"
#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

constexpr std::chrono::seconds kLongestLinger{30};

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
        case UdpSocket::Role::kCalling:
            break;
    }
    return socket.HasTarget() ? SocketState::kConnected : SocketState::kConnecting;
}

}  // namespace

Winsock::Winsock(EventGate& gate, EventLoop& loop, const RegionalFormats& formats,
                 std::chrono::milliseconds errorsApart)
    : gate_(gate),
      loop_(loop),
      formats_(formats),
      lookup_(gate, loop),
      errors_(gate, loop, errorsApart, [this](const Failure& reason) { RaiseError(reason); }),
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
    auto* const connection = OpenAs<TcpConnection>();
    auto* const udp = OpenAs<UdpSocket>();
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
    if (const auto* const listener = OpenAs<TcpListener>())
        return listener->Port();
    const auto* const udp = OpenAs<UdpSocket>();
    return udp != nullptr ? udp->Port() : localPort_;
}

std::size_t Winsock::WaitingBytes() const
{
    const auto* const connection = OpenAs<TcpConnection>();
    return connection != nullptr ? connection->Stream().WaitingBytes() : 0;
}

TcpProgress Winsock::Progress() const
{
    const auto* const connection = OpenAs<TcpConnection>();
    return connection != nullptr ? connection->Stream().Progress() : TcpProgress{};
}

void Winsock::Finish()
{
    auto* const connection = OpenAs<TcpConnection>();
    if (connection == nullptr)
        throw Failure(failure::kWrongProtocolOrState, "There is no connection to finish");
    connection->Finish();
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

}  // namespace platform::sockets
