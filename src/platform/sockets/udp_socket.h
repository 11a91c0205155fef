#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "platform/sockets/gated_events.h"
#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// An unconnected UDP socket on a local port, on all addresses, and the target of what it sends. It shares
/// the port with others who share it, and gets no datagrams of groups and none of its own.
class UdpSocket {
public:
    /// What the socket is open for: one receiver that was named, or receivers that say hello. The sender of a
    /// datagram becomes the target of a socket that waits for peers; kBound differs from kListening in name only.
    enum class Role { kCalling, kListening, kBound };

    /// What has arrived, at most once a pass of the event loop and bounded, with the sender of the last
    /// datagram. It comes through the gate and may destroy the socket.
    using Arrived = std::function<void(std::string_view bytes, const SocketAddress& sender)>;

    /// Port 0 is any free port. The gate and the loop are borrowed and outlive it. Failure: kAddressInUse,
    /// kSocketPermissionDenied and the like.
    UdpSocket(EventGate& gate, EventLoop& loop, Role role, std::uint16_t port, Arrived arrived);

    [[nodiscard]] Role OpenFor() const { return role_; }
    [[nodiscard]] std::uint16_t Port() const { return port_; }

    /// A socket that waits for peers never takes its own address: it would feed itself.
    void SetTarget(const SocketAddress& target);
    [[nodiscard]] bool HasTarget() const { return target_.has_value(); }

    /// Sends one datagram to the target, which there is. Failure: kMessageTooLong, kNetworkUnreachable and the
    /// like; the datagram is lost.
    void Send(std::string_view bytes);

private:
    void Read();
    [[nodiscard]] bool IsItself(const SocketAddress& address) const;

    Role role_;
    FileDescriptor socket_;
    int family_;
    std::uint16_t port_;
    std::optional<SocketAddress> target_;
    Arrived arrived_;
    GatedWatch readable_;
};

}  // namespace platform::sockets
