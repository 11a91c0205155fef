#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/file_descriptor.h"
#include "platform/sockets/socket_address.h"
#include "support/test_loop.h"

/// A number of open descriptors of this program.
[[nodiscard]] std::size_t OpenDescriptors();

/// The other end of what is under test, till or receiver: a plain socket that never blocks the test. The loop runs
/// while it waits, and outlives it.
class Peer {
public:
    /// A TCP connection to a port of this machine, at an address in digits, as soon as somebody listens there.
    [[nodiscard]] static Peer ConnectTo(TestLoop& loop, std::uint16_t port,
                                        const std::string& address = "127.0.0.1");
    /// True where nobody listens on a port of this machine.
    [[nodiscard]] static bool IsRefused(std::uint16_t port);
    /// A TCP socket that waits at a port, 0 being any free one. Its system takes connections, and what they bring,
    /// before anybody accepts them.
    [[nodiscard]] static Peer Listening(TestLoop& loop, const std::string& address = "127.0.0.1",
                                        std::uint16_t port = 0);
    /// A UDP socket at a port, which it may share.
    [[nodiscard]] static Peer Datagrams(TestLoop& loop, const std::string& address = "127.0.0.1",
                                        std::uint16_t port = 0, bool shares = false);
    /// A UDP socket that has joined a group on an interface.
    [[nodiscard]] static Peer InGroup(TestLoop& loop, const std::string& group, std::uint16_t port = 0,
                                      const std::string& interface = "lo");

    [[nodiscard]] std::uint16_t Port() const;
    [[nodiscard]] std::string PortText() const { return std::to_string(Port()); }

    /// Has the system keep little more than this of what comes and nobody reads.
    void KeepOnly(int bytes);

    /// The connection of who has connected here; waits for it.
    [[nodiscard]] Peer Accepted();
    /// What the connections have brought that came here so far, all ended by now.
    [[nodiscard]] std::vector<std::string> TakeConnections();

    /// Sends all of it, and waits while the other side does not read.
    void Send(std::string_view bytes);
    /// Sends until the other side takes no more, or so much was sent. Returns how much.
    [[nodiscard]] std::size_t SendUntilFull(std::size_t most);
    void SendTo(std::uint16_t port, const std::string& bytes, const std::string& address = "127.0.0.1");
    /// Waits for a datagram; what is sent later goes to its sender.
    void AnswerWhoSends();

    /// Runs the event loop until this many bytes have come or the other side has ended; gives all that has
    /// come and was not taken, "reset" behind it if it was no orderly end.
    [[nodiscard]] std::string Receive(std::size_t bytes);
    [[nodiscard]] std::string ReceiveAll() { return Receive(std::string::npos); }
    /// Runs the event loop until a datagram comes; nothing when none does.
    [[nodiscard]] std::optional<std::string> ReceiveDatagram();
    /// The datagrams that have come so far.
    [[nodiscard]] std::vector<std::string> TakeDatagrams();
    [[nodiscard]] bool HasDatagram();

    void EndSending();
    void Close() { socket_.Close(); }
    void Reset();

private:
    Peer(TestLoop& loop, platform::FileDescriptor socket) : loop_(&loop), socket_(std::move(socket)) {}
    void TakeAvailable();

    TestLoop* loop_;
    platform::FileDescriptor socket_;
    std::string received_;
    bool ended_ = false;
};
