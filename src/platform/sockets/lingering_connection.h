#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

#include "platform/sockets/tcp_stream.h"

namespace platform::sockets {

/// A closed connection that still hands what waits to its peer, in the background and without events: it
/// sends the rest, ends its side and reads on until the peer has ended too. Closing with data unread would
/// reset the connection, and the peer could lose what is under way.
///
/// It destroys itself when done, 30 s after it was made at the latest, or with its parent.
class LingeringConnection : public QObject {
public:
    LingeringConnection(std::unique_ptr<TcpStream> stream, QObject* parent);

private:
    void Drain();
    void FinishIfDone();

    std::unique_ptr<TcpStream> stream_;
    bool peerEnded_ = false;
    QSocketNotifier readable_;
};

}  // namespace platform::sockets
