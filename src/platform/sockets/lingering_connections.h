#pragma once

#include <chrono>
#include <memory>
#include <vector>

#include "platform/event_loop.h"
#include "platform/sockets/tcp_stream.h"

namespace platform::sockets {

/// Closed connections that still hand what waits to their peers, in the background and without events: each
/// sends the rest, ends its side and reads on until the peer has ended too. Closing with data unread would
/// reset the connection, and the peer could lose what is under way.
///
/// A connection goes when it is done, some time after it was added at the latest, or with this object. If bytes of
/// it still wait then it is reset, so that its peer cannot take what it has for the whole.
class LingeringConnections {
public:
    /// The loop outlives it. `longest` is the time that each connection has.
    LingeringConnections(EventLoop& loop, std::chrono::milliseconds longest);
    ~LingeringConnections();

    void Add(std::unique_ptr<TcpStream> stream);

private:
    class Connection;

    void Remove(const Connection& connection);

    EventLoop& loop_;
    std::chrono::milliseconds longest_;
    std::vector<std::unique_ptr<Connection>> connections_;
};

}  // namespace platform::sockets
