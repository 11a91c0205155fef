#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

#include "platform/posix/file_descriptor.h"
#include "platform/sockets/gated_events.h"
#include "platform/sockets/send_queue.h"

namespace platform::sockets {

/// How far the bytes have come that were handed to a TCP connection.
struct TcpProgress {
    std::uint64_t accepted = 0;  // by Send
    std::uint64_t unsent = 0;    // of these: not sent yet, by this program or by the system
    std::uint64_t unacknowledged =
        0;  // of these: not acknowledged by the peer's system, the unsent ones included
};

/// A TCP connection and what waits to be sent on it. It sends on whenever the peer takes more, outside the
/// gate: that raises no event. A call that fails in passing is made again; any other failure of a send breaks
/// the connection for good.
///
/// Destroying it while bytes wait resets the connection, so that the peer cannot take it for the end of the
/// feed. What the system has taken it still delivers.
class TcpStream {
public:
    /// The loop and the sum are borrowed and outlive the stream.
    TcpStream(EventLoop& loop, FileDescriptor socket, std::size_t& waitingInAll);
    TcpStream(const TcpStream&) = delete;
    TcpStream& operator=(const TcpStream&) = delete;
    ~TcpStream();

    /// Hands bytes to the network, or to the queue behind those that wait. Failure: kSocketWouldBlock where
    /// the queue would get too long (the bytes are refused whole, as are more bytes than the queue can hold),
    /// kOutOfMemory where the system cannot tell when there is room, which breaks the connection, kConnectionReset and
    /// the like on one that is broken.
    void Send(std::string_view bytes);

    /// What one look at the connection has brought: bytes, or the peer's orderly end, or an error.
    struct Received {
        std::size_t bytes = 0;
        bool ended = false;
        std::error_code error;
    };

    [[nodiscard]] Received Receive(std::span<char> buffer);

    /// Tells the peer that nothing more will come. Nothing may wait.
    void EndSending();

    /// True when nothing waits: all was handed to the system.
    [[nodiscard]] bool IsIdle() const { return queue_.IsEmpty(); }

    /// Number of bytes that wait in this program.
    [[nodiscard]] std::size_t WaitingBytes() const { return queue_.Bytes(); }

    /// The error that ended sending. The system reports it once, so Receive does not see it again.
    [[nodiscard]] const std::error_code& Error() const { return error_; }

    [[nodiscard]] TcpProgress Progress() const;

    /// Whether the peer's system has acknowledged the end that EndSending announced, and so all bytes before it.
    enum class Delivery { kUnderWay, kAcknowledged, kLost };
    [[nodiscard]] Delivery EndDelivered() const;

    [[nodiscard]] const FileDescriptor& Descriptor() const { return socket_; }

    /// Called when all that waited was handed over in the background; it may destroy the stream.
    std::function<void()> onIdle;
    /// Called when sending breaks the connection: in the background, where it may destroy the stream, or inside Send, where
    /// it must not.
    std::function<void()> onBroken;

private:
    [[nodiscard]] std::size_t SendNow(std::string_view bytes);
    void AwaitRoom();
    void SendWaiting();
    void Break(const std::error_code& error);
    /// A count that the system keeps of what it has taken.
    [[nodiscard]] std::uint64_t Count(unsigned long request) const;

    EventLoop& loop_;
    FileDescriptor socket_;
    SendQueue queue_;
    std::uint64_t accepted_ = 0;
    bool endSent_ = false;
    std::error_code error_;
    std::optional<RestingWatch> writable_;  // while something waits
};

}  // namespace platform::sockets
