#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/posix/file_descriptor.h"
#include "platform/sockets/socket_address.h"
#include "sockets/loop_helpers.h"

namespace platform::sockets {

/// A number of open descriptors of this program.
[[nodiscard]] std::size_t OpenDescriptors();

/// The other end of a control under test: a plain socket that never blocks the test. The loop runs while it
/// waits, and outlives it.
class Peer {
public:
    /// A TCP connection to a port of this machine, at an address in digits.
    [[nodiscard]] static Peer ConnectTo(TestLoop& loop, std::uint16_t port,
                                        const std::string& address = "127.0.0.1");
    /// A TCP socket that waits at a port, 0 being any free one.
    [[nodiscard]] static Peer Listening(TestLoop& loop, const std::string& address = "127.0.0.1",
                                        std::uint16_t port = 0);
    /// A UDP socket at a port, which it may share.
    [[nodiscard]] static Peer Datagrams(TestLoop& loop, const std::string& address = "127.0.0.1",
                                        std::uint16_t port = 0, bool shares = false);
    /// A UDP socket that has joined a group on an interface.
    [[nodiscard]] static Peer InGroup(TestLoop& loop, const std::string& group, std::uint16_t port = 0,
                                      const std::string& interface = "lo");

    [[nodiscard]] std::uint16_t Port() const { return SocketAddress::OfSocket(socket_.Number()).Port(); }
    [[nodiscard]] std::string PortText() const { return std::to_string(Port()); }

    /// The connection of who has connected here; waits for it.
    [[nodiscard]] Peer Accepted();

    void Send(const std::string& bytes);
    /// For a thread of the test's own: waits while the other side does not read.
    void SendBlocking(std::string_view bytes);
    void SendTo(std::uint16_t port, const std::string& bytes, const std::string& address = "127.0.0.1");

    /// Runs the event loop until this many bytes have come or the other side has ended; gives all that has
    /// come and was not taken, "reset" behind it if it was no orderly end.
    [[nodiscard]] std::string Receive(std::size_t bytes);
    [[nodiscard]] std::string ReceiveAll() { return Receive(std::string::npos); }
    /// Runs the event loop until a datagram comes; nothing when none does.
    [[nodiscard]] std::optional<std::string> ReceiveDatagram();
    [[nodiscard]] bool HasDatagram();

    void EndSending();
    void Close() { socket_.Close(); }
    void Reset();

private:
    Peer(TestLoop& loop, FileDescriptor socket) : loop_(&loop), socket_(std::move(socket)) {}
    void TakeAvailable();

    TestLoop* loop_;
    FileDescriptor socket_;
    std::string received_;
    bool ended_ = false;
};

}  // namespace platform::sockets
