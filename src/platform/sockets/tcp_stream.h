#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>

#include "platform/event_loop.h"
#include "platform/posix/file_descriptor.h"
#include "platform/sockets/send_queue.h"

namespace platform::sockets {

/// A TCP connection and what waits to be sent on it. It sends on whenever the peer takes more, outside the
/// gate: that raises no event.
class TcpStream {
public:
    /// The loop and the sum are borrowed and outlive the stream.
    TcpStream(EventLoop& loop, FileDescriptor socket, std::size_t& waitingInAll);

    /// Hands bytes to the network, or to the queue behind those that wait. Failure: kSocketWouldBlock where
    /// the queue would get too long (the bytes are refused whole, as are more bytes than the queue can hold),
    /// kConnectionReset and the like.
    void Send(std::string_view bytes);

    /// As recv: the number of bytes, 0 at the peer's orderly end, -1 with errno.
    [[nodiscard]] ssize_t Receive(std::span<char> buffer);

    /// True when nothing waits any more: all was handed to the network, or the connection is broken.
    [[nodiscard]] bool IsIdle() const { return queue_.IsEmpty(); }

    /// The errno with which sending broke, which reading then does not report again; 0 for none.
    [[nodiscard]] int Error() const { return error_; }

    /// Tells the peer that nothing more will come.
    void EndSending();

    [[nodiscard]] const FileDescriptor& Descriptor() const { return socket_; }

    /// Called when the stream has become idle in the background; it may destroy the stream.
    std::function<void()> onIdle;

private:
    [[nodiscard]] std::size_t SendNow(std::string_view bytes);
    void SendWaiting();

    EventLoop& loop_;
    FileDescriptor socket_;
    SendQueue queue_;
    int error_ = 0;
    std::unique_ptr<Watch> writable_;  // while something waits
};

}  // namespace platform::sockets
