#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/sockets/gated_events.h"
#include "platform/sockets/tcp_stream.h"

namespace platform::sockets {

/// An established TCP connection that the control serves. Its events come from the event loop through the
/// gate; each may destroy it.
class TcpConnection {
public:
    struct Events {
        /// At most once a pass of the event loop, with a bounded number of bytes.
        std::function<void(std::string_view bytes)> arrived;
        /// The peer has ended its side in order; sending may go on.
        std::function<void()> ended;
        /// With the errno.
        std::function<void(int error)> broken;
    };

    TcpConnection(EventGate& gate, EventLoop& loop, std::unique_ptr<TcpStream> stream, Events events);

    /// As TcpStream::Send.
    void Send(std::string_view bytes) { stream_->Send(bytes); }

    /// Gives the stream away; no event comes any more.
    [[nodiscard]] std::unique_ptr<TcpStream> TakeStream();

private:
    void Read();
    void End(int error);

    std::unique_ptr<TcpStream> stream_;
    Events events_;
    std::unique_ptr<GatedWatch> readable_;
};

}  // namespace platform::sockets
