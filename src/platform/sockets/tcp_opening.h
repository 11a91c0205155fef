#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/sockets/gated_events.h"
#include "platform/sockets/socket_address.h"

/// How a TCP connection comes up: this side calls, or waits to be called.
namespace platform::sockets {

/// Connects to the first of several addresses of a host that answers. It reports once, from the event loop
/// through the gate; the report may destroy it.
class TcpConnector {
public:
    struct Events {
        std::function<void(FileDescriptor socket)> connected;
        /// With the error and the address of the last attempt.
        std::function<void(const std::error_code& error, const SocketAddress& address)> failed;
    };

    /// `addresses` is not empty. The gate and the loop are borrowed and outlive it.
    TcpConnector(EventGate& gate, EventLoop& loop, std::vector<SocketAddress> addresses, Events events);

    /// Starts the attempts, inside an event. Where all fail at once, the failure is raised inside this call.
    void Start();

    /// Starts the attempts, inside a call on the control: no event comes before the next pass of the event
    /// loop.
    void StartQuietly();

private:
    /// None where an attempt is under way; else the error of the last one.
    [[nodiscard]] std::error_code TryRemaining();
    [[nodiscard]] std::error_code Try(const SocketAddress& address);
    void Fail(const std::error_code& error) { events_.failed(error, addresses_[tried_ - 1]); }
    void FinishAttempt();

    EventGate& gate_;
    EventLoop& loop_;
    std::vector<SocketAddress> addresses_;
    std::size_t tried_ = 0;
    Events events_;
    FileDescriptor socket_;
    std::optional<GatedWatch> writable_;
    GatedEvents gated_;
};

/// Waits for TCP peers on a local port, on all addresses. Its events come from the event loop through the
/// gate; each may destroy it. Destroying it refuses the peers that still wait.
class TcpListener {
public:
    struct Events {
        /// One peer a pass of the event loop.
        std::function<void(FileDescriptor peer)> announced;
        std::function<void(const std::error_code& error)> failed;
    };

    /// Port 0 is any free port. Failure: kAddressInUse, kSocketPermissionDenied and the like.
    TcpListener(EventGate& gate, EventLoop& loop, std::uint16_t port, Events events);

    [[nodiscard]] std::uint16_t Port() const;

private:
    void AcceptOne();

    FileDescriptor socket_;
    Events events_;
    GatedWatch readable_;
};

}  // namespace platform::sockets
