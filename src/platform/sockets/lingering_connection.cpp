#include "platform/sockets/lingering_connection.h"

#include <QTimer>
#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace platform::sockets {
namespace {

constexpr std::chrono::seconds kLongestLinger{30};
constexpr std::size_t kMostReadAPass = std::size_t{64} << 10;

}  // namespace

LingeringConnection::LingeringConnection(std::unique_ptr<TcpStream> stream, QObject* parent)
    : QObject(parent),
      stream_(std::move(stream)),
      readable_(stream_->Descriptor().Number(), QSocketNotifier::Read)
{
    connect(&readable_, &QSocketNotifier::activated, this, [this] { Drain(); });
    QTimer::singleShot(kLongestLinger, this, [this] { deleteLater(); });
    stream_->onIdle = [this] { FinishIfDone(); };
    FinishIfDone();
}

void LingeringConnection::Drain()
{
    std::array<char, kMostReadAPass> dropped;
    const ssize_t count = stream_->Receive(dropped);
    if (count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR)))
        return;
    readable_.setEnabled(false);
    peerEnded_ = true;
    FinishIfDone();
}

void LingeringConnection::FinishIfDone()
{
    if (!stream_->IsIdle())
        return;
    stream_->EndSending();
    if (peerEnded_ || stream_->Error() != 0)
        deleteLater();
}

}  // namespace platform::sockets
