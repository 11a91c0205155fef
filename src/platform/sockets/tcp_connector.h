#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/sockets/gated_events.h"
#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// Connects to the first of several addresses of a host that answers. It reports once, from the event loop
/// through the gate; the report may destroy it.
class TcpConnector {
public:
    struct Events {
        std::function<void(FileDescriptor socket)> connected;
        /// With the errno and the address of the last attempt.
        std::function<void(int error, const SocketAddress& address)> failed;
    };

    /// Starts at once; `addresses` is not empty.
    TcpConnector(EventGate& gate, EventLoop& loop, std::vector<SocketAddress> addresses, Events events);

private:
    /// 0 where an attempt is under way, otherwise the errno of the last one.
    [[nodiscard]] int TryRemaining(int lastError);
    [[nodiscard]] int Try(const SocketAddress& address);
    void FinishAttempt();

    EventGate& gate_;
    EventLoop& loop_;
    std::vector<SocketAddress> addresses_;
    std::size_t tried_ = 0;
    Events events_;
    FileDescriptor socket_;
    std::unique_ptr<GatedWatch> writable_;
    GatedEvents failure_;
};

}  // namespace platform::sockets
