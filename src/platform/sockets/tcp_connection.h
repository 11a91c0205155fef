#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <system_error>

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
        /// All that waited was handed to the system.
        std::function<void()> drained;
        /// The connection is lost.
        std::function<void(const std::error_code& error)> broken;
        /// The peer's system has all bytes and the end that Finish announced.
        std::function<void()> finished;
    };

    TcpConnection(EventGate& gate, EventLoop& loop, std::unique_ptr<TcpStream> stream, Events events);

    /// As TcpStream::Send. A failure other than kSocketWouldBlock is followed by an event.
    void Send(std::string_view bytes) { stream_->Send(bytes); }

    /// Ends the connection in order once all was sent. Then only the events `arrived`, `finished` and `broken`
    /// come.
    void Finish();
    [[nodiscard]] bool IsFinishing() const { return finishing_; }

    [[nodiscard]] const TcpStream& Stream() const { return *stream_; }

    /// Gives the stream away; no event comes any more.
    [[nodiscard]] std::unique_ptr<TcpStream> TakeStream();

private:
    void Read();
    void End(const std::error_code& error);
    void Sent();
    void FindLost();
    void EndSending();
    void LookForDelivery();

    EventLoop& loop_;
    std::unique_ptr<TcpStream> stream_;
    Events events_;
    GatedEvents gated_;
    std::optional<GatedWatch> readable_;  // until the peer's end
    bool finishing_ = false;
    std::unique_ptr<Alarm> look_;  // for the delivery of the end
};

}  // namespace platform::sockets
