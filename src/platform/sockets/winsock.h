#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_gate.h"
#include "platform/failure.h"
#include "platform/regional_formats.h"
#include "platform/sockets/host_lookup.h"
#include "platform/sockets/lingering_connections.h"
#include "platform/sockets/tcp_connection.h"
#include "platform/sockets/tcp_connector.h"
#include "platform/sockets/tcp_listener.h"
#include "platform/sockets/udp_socket.h"
#include "platform/winsock_control.h"

namespace platform::sockets {

/// The Winsock control over the operating system's sockets, driven by the event loop of its thread.
///
/// Blanks around a host are dropped. A request is good until its OnConnectionRequest has returned; a peer
/// that was not accepted by then is refused. After OnClose of a peer that has only ended its own side,
/// State() stays kConnected and sending goes on until Close. On UDP the target is taken from the remote host
/// and port by the next Connect, Listen or Bind, and a send that the network refuses at once is a Failure of
/// that SendData.
class Winsock final : public WinsockControl {
public:
    /// All three must outlive the control.
    Winsock(EventGate& gate, EventLoop& loop, const RegionalFormats& formats);
    ~Winsock() override;

    void SetProtocol(Protocol protocol) override;
    void SetRemoteHost(const std::string& host) override;
    void SetRemotePort(std::int32_t port) override;
    void SetLocalPort(std::int32_t port) override;
    [[nodiscard]] std::int16_t State() const override { return state_; }
    void Connect() override;
    void Connect(const std::string& host, const std::string& port) override;
    void Listen() override;
    void Accept(RequestId request) override;
    void Bind(const std::string& port) override;
    void SendData(const std::string& text) override;
    std::string GetData() override;
    void Close() override;

    /// The port that is open, also where any free port was asked for; otherwise the port that was set.
    [[nodiscard]] std::uint16_t LocalPort() const;

private:
    using Addresses = std::vector<SocketAddress>;

    void RequireClosed(const char* operation) const;
    void Resolve(HostLookup::Answer answer);
    void ConnectTcp(Addresses addresses);
    void ConnectUdp(const Addresses& addresses);
    void OpenUdp(std::uint16_t port);
    void OpenUdpForPeers(std::uint16_t port, std::int16_t state);
    void SetTarget(const Addresses& addresses);

    void Connected(FileDescriptor socket);
    void Serve(FileDescriptor socket);
    void Announce(FileDescriptor peer);
    void TakeArrived(std::string_view bytes);
    void TakeDatagrams(std::string_view bytes, const SocketAddress& sender);
    void Fail(const Failure& reason);
    void DropSockets();

    EventGate& gate_;
    EventLoop& loop_;
    const RegionalFormats& formats_;

    Protocol protocol_ = Protocol::kTcp;
    std::string remoteHost_;
    std::uint16_t remotePort_ = 0;
    std::uint16_t localPort_ = 0;
    std::int16_t state_ = kClosed;

    std::string received_;
    std::optional<SocketAddress> target_;
    RequestId lastRequest_ = 0;
    FileDescriptor requestingPeer_;

    std::size_t waitingInAll_ = 0;
    HostLookup lookup_;
    std::unique_ptr<TcpConnector> connector_;
    std::unique_ptr<TcpConnection> connection_;
    std::unique_ptr<TcpListener> listener_;
    std::unique_ptr<UdpSocket> udp_;
    LingeringConnections lingering_;
};

}  // namespace platform::sockets
