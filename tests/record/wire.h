#pragma once

#include <cstdint>
#include <string>

#include "platform/posix/file_descriptor.h"

/// A socket of the test's own, till or receiver, that blocks for 30 s at most.
class Wire {
public:
    [[nodiscard]] static Wire ConnectTo(std::uint16_t port);
    /// Waits at a port, 0 being any free one.
    [[nodiscard]] static Wire Listening(std::uint16_t port = 0);
    [[nodiscard]] static Wire Datagrams();

    [[nodiscard]] Wire Accept() const;
    [[nodiscard]] std::uint16_t Port() const;

    /// True when all of it was sent.
    bool Send(const std::string& bytes) const;
    /// Sends until the other side takes no more, or so much was sent. Returns how much.
    [[nodiscard]] std::size_t SendUntilFull(std::size_t most) const;
    void SendTo(const std::string& address, std::uint16_t port, const std::string& bytes) const;
    /// Waits for a datagram; later ones go to its sender.
    void ConnectToWhoeverSends() const;

    /// So many bytes, or as many as come before the other side ends or is silent.
    [[nodiscard]] std::string Receive(std::size_t bytes) const;
    [[nodiscard]] std::string ReceiveAll() const { return Receive(std::string::npos); }

    void EndSending() const;
    void Close() { socket_.Close(); }
    void Reset();

private:
    explicit Wire(int socket);

    platform::FileDescriptor socket_;
};
