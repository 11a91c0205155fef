#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/failure.h"
#include "platform/regional_formats.h"
#include "platform/sockets/host_lookup.h"
#include "platform/sockets/lingering_connections.h"
#include "platform/sockets/paced_errors.h"
#include "platform/sockets/tcp_connection.h"
#include "platform/sockets/tcp_opening.h"
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
///
/// Beyond the interface it tells what a program without an operator must know of a TCP connection: how much
/// waits, how far the bytes have come, and what was lost.
class Winsock final : public WinsockControl {
public:
    static constexpr std::chrono::milliseconds kErrorsApart{500};

    /// All three must outlive the control. Its errors come so far apart, 500 ms at least.
    Winsock(EventGate& gate, EventLoop& loop, const RegionalFormats& formats,
            std::chrono::milliseconds errorsApart = kErrorsApart);
    ~Winsock() override;

    void SetProtocol(Protocol protocol) override;
    void SetRemoteHost(const std::string& host) override;
    void SetRemotePort(std::int32_t port) override;
    void SetLocalPort(std::int32_t port) override;
    [[nodiscard]] SocketState State() const override;
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

    /// Bytes of the TCP connection that wait in this program for the receiver to take them; 0 without one. At
    /// a limit of all that waits SendData refuses records, so whoever sends without a pace stops well before
    /// it and goes on at OnDrained.
    [[nodiscard]] std::size_t WaitingBytes() const;

    /// How far the bytes of the TCP connection have come; all zeros without one. A system call.
    [[nodiscard]] TcpProgress Progress() const;

    /// Sends what waits and ends the TCP connection in order. State() stays kConnected until OnFinished or
    /// OnError; no OnClose comes, and SendData is a Failure (kWrongProtocolOrState). It takes as long as the
    /// peer takes; Close gives it up. Failure: kWrongProtocolOrState without a TCP connection.
    void Finish();

    /// Bytes of the TCP connection waited, and the last of them was handed to the system.
    std::function<void()> OnDrained;

    /// The TCP connection is lost. It comes before OnError, and also where OnError is held back and a Close
    /// takes it away.
    std::function<void(const TcpProgress& progress)> OnLost;

    /// After Finish: the peer's system has acknowledged all bytes and the end. The control is closed.
    std::function<void()> OnFinished;

private:
    using Addresses = std::vector<SocketAddress>;

    /// What the control has open. Each alternative has a state of its own.
    struct Nothing {};
    struct Failed {};
    struct LookingUp {};
    using Opened =
        std::variant<Nothing, Failed, LookingUp, std::unique_ptr<TcpConnector>, std::unique_ptr<TcpListener>,
                     std::unique_ptr<TcpConnection>, std::unique_ptr<UdpSocket>>;

    /// What is open, if it is that; null otherwise.
    template <class Socket>
    [[nodiscard]] Socket* OpenAs() const
    {
        const auto* const open = std::get_if<std::unique_ptr<Socket>>(&opened_);
        return open != nullptr ? open->get() : nullptr;
    }

    void RequireClosed(const char* operation) const;
    void ConnectTcp();
    void OpenUdp(UdpSocket::Role role, std::uint16_t port);

    // winsock_events.cpp
    [[nodiscard]] std::unique_ptr<TcpConnector> Calling(Addresses addresses);
    [[nodiscard]] std::unique_ptr<TcpConnection> Serving(FileDescriptor socket);
    void CallFound(const Addresses& addresses);
    void TakeFoundTarget(const Addresses& addresses);
    void Connected(FileDescriptor socket);
    void Announce(FileDescriptor peer);
    void TakeArrived(std::string_view bytes);
    void TakeDatagrams(std::string_view bytes, const SocketAddress& sender);
    void Finished();
    void Lose(const std::error_code& error);
    void Fail(const Failure& reason);
    void RaiseError(const Failure& reason);

    EventGate& gate_;
    EventLoop& loop_;
    const RegionalFormats& formats_;

    Protocol protocol_ = Protocol::kTcp;
    std::string remoteHost_;
    std::uint16_t remotePort_ = 0;
    std::uint16_t localPort_ = 0;

    std::string received_;
    RequestId lastRequest_ = 0;
    FileDescriptor requestingPeer_;

    std::size_t waitingInAll_ = 0;
    HostLookup lookup_;
    PacedErrors errors_;
    Opened opened_;
    LingeringConnections lingering_;
};

}  // namespace platform::sockets
