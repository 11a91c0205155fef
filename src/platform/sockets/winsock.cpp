#include "platform/sockets/winsock.h"

#include <algorithm>
#include <utility>

#include "platform/ansi_code_page.h"
#include "platform/conversions.h"
#include "platform/sockets/socket_error.h"

namespace platform::sockets {

Winsock::Winsock(EventGate& gate, EventLoop& loop, const RegionalFormats& formats)
    : gate_(gate), loop_(loop), formats_(formats), lookup_(gate, loop), lingering_(loop)
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

void Winsock::Connect()
{
    RequireClosed("connect");
    if (remoteHost_.empty() || remotePort_ == 0)
        throw Failure(failure::kAddressNotAvailable, "Cannot connect without a remote host and port");
    if (protocol_ == Protocol::kUdp)
        OpenUdp(0);
    state_ = kConnecting;
    Resolve([this](const Addresses& addresses) {
        if (addresses.empty())
            Fail({failure::kHostNotFound, "Host not found: " + remoteHost_});
        else if (protocol_ == Protocol::kUdp)
            ConnectUdp(addresses);
        else
            ConnectTcp(addresses);
    });
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
        OpenUdpForPeers(localPort_, kListening);
        return;
    }
    listener_ = std::make_unique<TcpListener>(
        gate_, loop_, localPort_,
        TcpListener::Events{
            .announced = [this](FileDescriptor peer) { Announce(std::move(peer)); },
            .failed = [this](int error) { Fail(SocketFailure(error, "Cannot accept a peer")); }});
    state_ = kListening;
}

void Winsock::Accept(RequestId request)
{
    RequireClosed("accept a peer");
    if (!requestingPeer_.IsOpen() || request != lastRequest_)
        throw Failure(failure::kWrongProtocolOrState,
                      "No peer waits with request " + std::to_string(request));
    Serve(std::move(requestingPeer_));
}

void Winsock::Bind(const std::string& port)
{
    RequireClosed("bind a port");
    if (protocol_ != Protocol::kUdp)
        throw Failure(failure::kWrongProtocolOrState, "Only a UDP socket binds a port");
    SetLocalPort(ToLong(port, formats_));
    OpenUdpForPeers(localPort_, kOpen);
}

void Winsock::SendData(const std::string& text)
{
    if (connection_)
        connection_->Send(ToAnsi(text));
    else if (udp_ && target_)
        udp_->Send(ToAnsi(text), *target_);
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
    if (connection_)
        lingering_.Add(connection_->TakeStream());
    DropSockets();
    received_.clear();
    state_ = kClosed;
}

std::uint16_t Winsock::LocalPort() const
{
    if (listener_)
        return listener_->Port();
    return udp_ ? udp_->Port() : localPort_;
}

void Winsock::RequireClosed(const char* operation) const
{
    if (state_ != kClosed)
        throw Failure(failure::kInvalidOperationAtCurrentState,
                      std::string("Only a closed socket can ") + operation);
}

/// Answers at once for an address, later for a name.
void Winsock::Resolve(HostLookup::Answer answer)
{
    if (const auto address = AddressFromText(remoteHost_)) {
        answer({*address});
        return;
    }
    try {
        lookup_.Start(remoteHost_, std::move(answer));
    } catch (...) {
        Close();
        throw;
    }
}

void Winsock::ConnectTcp(Addresses addresses)
{
    for (SocketAddress& address : addresses)
        address.SetPort(remotePort_);
    connector_ = std::make_unique<TcpConnector>(
        gate_, loop_, std::move(addresses),
        TcpConnector::Events{.connected = [this](FileDescriptor socket) { Connected(std::move(socket)); },
                             .failed =
                                 [this](int error, const SocketAddress& address) {
                                     Fail(SocketFailure(error, "Cannot connect to " + address.Text()));
                                 }});
}

void Winsock::ConnectUdp(const Addresses& addresses)
{
    SetTarget(addresses);
    state_ = kConnected;
}

void Winsock::OpenUdp(std::uint16_t port)
{
    udp_ = std::make_unique<UdpSocket>(
        gate_, loop_, port,
        [this](std::string_view bytes, const SocketAddress& sender) { TakeDatagrams(bytes, sender); });
    target_.reset();
}

/// Opens the local port for a target that says hello, or that was set.
void Winsock::OpenUdpForPeers(std::uint16_t port, std::int16_t state)
{
    OpenUdp(port);
    state_ = state;
    if (remoteHost_.empty() || remotePort_ == 0)
        return;
    Resolve([this](const Addresses& addresses) {
        if (!target_)
            SetTarget(addresses);
    });
}

/// Datagrams do not tell which of several addresses is served: IPv4 is the likelier one.
void Winsock::SetTarget(const Addresses& addresses)
{
    if (addresses.empty())
        return;
    const auto found = std::ranges::find(addresses, AF_INET, &SocketAddress::Family);
    target_ = found != addresses.end() ? *found : addresses.front();
    target_->SetPort(remotePort_);
}

}  // namespace platform::sockets
