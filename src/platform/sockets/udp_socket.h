#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "platform/sockets/gated_events.h"
#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// An unconnected UDP socket on a local port, on all addresses. It shares the port with others who share it,
/// and gets no datagrams of groups.
class UdpSocket {
public:
    /// What has arrived, at most once a pass of the event loop and bounded, with the sender of the last
    /// datagram. It comes through the gate and may destroy the socket.
    using Arrived = std::function<void(std::string_view bytes, const SocketAddress& sender)>;

    /// Port 0 is any free port. Failure: kAddressInUse, kSocketPermissionDenied and the like.
    UdpSocket(EventGate& gate, EventLoop& loop, std::uint16_t port, Arrived arrived);

    /// Sends one datagram. Failure: kMessageTooLong, kNetworkUnreachable and the like; the datagram is lost.
    void Send(std::string_view bytes, const SocketAddress& target);

    [[nodiscard]] std::uint16_t Port() const { return SocketAddress::OfSocket(socket_.Number()).Port(); }

private:
    void Read();

    FileDescriptor socket_;
    int family_;
    Arrived arrived_;
    GatedWatch readable_;
};

}  // namespace platform::sockets
