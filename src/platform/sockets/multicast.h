#pragma once

#include <string>
#include <system_error>
#include <vector>

#include "platform/event_gate.h"
#include "platform/multicast_control.h"
#include "platform/sockets/gated_events.h"
#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// The multicast control over the operating system's sockets. Records leave with a time to live of 1 and are
/// looped back to receivers on this machine.
///
/// Blanks around an address are dropped. Bytes longer than a datagram can be are a Failure (kMessageTooLong).
/// No OnError comes after CloseGroup for what happened before it. Errors are not held apart: one comes of a send
/// alone, so that a handler that opens the group again makes no storm.
class Multicast final : public MulticastControl {
public:
    /// Both must outlive the control.
    Multicast(EventGate& gate, EventLoop& loop) : gated_(gate, loop) {}

    void OpenGroup(const std::string& groupAddress, std::int32_t port) override;
    void CloseGroup() override;
    void SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                     std::int32_t port) override;

private:
    void OpenFor(const SocketAddress& group);
    void Report(const std::error_code& error, const std::string& what);

    bool closed_ = false;
    FileDescriptor socket_;
    int family_ = 0;
    GatedEvents gated_;
};

}  // namespace platform::sockets
