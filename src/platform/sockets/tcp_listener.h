#pragma once

#include <cstdint>
#include <functional>

#include "platform/sockets/gated_events.h"

namespace platform::sockets {

/// Waits for TCP peers on a local port, on all addresses. Its events come from the event loop through the
/// gate; each may destroy it. Destroying it refuses the peers that still wait.
class TcpListener {
public:
    struct Events {
        /// One peer a pass of the event loop.
        std::function<void(FileDescriptor peer)> announced;
        /// With the errno.
        std::function<void(int error)> failed;
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
