#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/posix/file_descriptor.h"

/// What a player sends to, in plain blocking sockets on 127.0.0.1. What takes longer than a test should fails it.
namespace receivers {

/// One end of a TCP connection.
class Connection {
public:
    explicit Connection(platform::FileDescriptor socket) : socket_(std::move(socket)) {}

    /// Connects as soon as somebody listens on the port.
    [[nodiscard]] static Connection To(std::uint16_t port);

    /// At least so many bytes, unless the end comes before.
    [[nodiscard]] std::string Read(std::size_t bytes);
    /// All that comes up to the end; "(reset)" behind it when it is none in order.
    [[nodiscard]] std::string ReadAll();

    /// Ends the connection so that the player's system is told.
    void Reset();

private:
    platform::FileDescriptor socket_;
};

/// A port on which a receiver listens. Its system takes connections, and some bytes, before anybody accepts them.
class Listener {
public:
    /// The system keeps so many bytes of a connection that nobody reads, or as many as it likes.
    explicit Listener(std::uint16_t port, std::optional<int> bytesKept = {});

    [[nodiscard]] Connection Accept();
    /// The content of the connections that have come so far, all ended by now.
    [[nodiscard]] std::vector<std::string> TakeEnded();

private:
    platform::FileDescriptor socket_;
};

/// A UDP socket on a port, in a multicast group if one is given.
class Datagrams {
public:
    explicit Datagrams(std::uint16_t port, const std::string& group = "");

    void SendTo(std::uint16_t port, const std::string& bytes);
    /// All that have come so far.
    [[nodiscard]] std::vector<std::string> TakeAll();

private:
    platform::FileDescriptor socket_;
};

}  // namespace receivers
