#include "platform/sockets/tcp_connection.h"

#include <array>
#include <chrono>
#include <utility>

#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

constexpr std::size_t kMostReadAPass = std::size_t{64} << 10;

/// The system does not tell when the peer has acknowledged the last byte.
constexpr std::chrono::milliseconds kBetweenLooks{10};

}  // namespace

TcpConnection::TcpConnection(EventGate& gate, EventLoop& loop, std::unique_ptr<TcpStream> stream,
                             Events events)
    : loop_(loop), stream_(std::move(stream)), events_(std::move(events)), gated_(gate, loop)
{
    stream_->onIdle = [this] { Sent(); };
    stream_->onBroken = [this] { gated_.Post([this] { FindLost(); }); };
    readable_.emplace(gate, loop, stream_->Descriptor(), Readiness::kReadable, [this] { Read(); });
}

void TcpConnection::Finish()
{
    finishing_ = true;
    if (stream_->IsIdle())
        EndSending();
}

std::unique_ptr<TcpStream> TcpConnection::TakeStream()
{
    readable_.reset();
    return std::move(stream_);
}

void TcpConnection::Read()
{
    std::array<char, kMostReadAPass> buffer;
    const auto received = stream_->Receive(buffer);
    const auto sending = stream_->Error();
    if (received.bytes > 0) {
        if (sending)
            gated_.Post([this] { FindLost(); });
        events_.arrived({buffer.data(), received.bytes});
    } else if (received.ended) {
        End(sending);
    } else if (!IsPassing(received.error)) {
        End(received.error);
    } else if (sending) {
        events_.broken(sending);
    } else {
        readable_->Rest();
    }
}

void TcpConnection::End(const std::error_code& error)
{
    readable_.reset();
    // Sending into a connection whose peer has ended it in order reports a broken pipe.
    const bool isInOrder = !error || (error == std::errc::broken_pipe && !finishing_);
    if (!isInOrder)
        events_.broken(error);
    else if (!finishing_)
        events_.ended();
}

void TcpConnection::Sent()
{
    if (finishing_)
        EndSending();
    else
        gated_.Enter([this] { events_.drained(); });
}

/// What the peer has sent before is still read: an orderly end may stand behind it.
void TcpConnection::FindLost()
{
    if (readable_)
        Read();
    else
        events_.broken(stream_->Error() ? stream_->Error() : make_error_code(std::errc::connection_reset));
}

void TcpConnection::EndSending()
{
    stream_->EndSending();
    look_ = loop_.NewAlarm([this] { LookForDelivery(); });
    look_->Set(std::chrono::steady_clock::now());
}

void TcpConnection::LookForDelivery()
{
    switch (stream_->EndDelivered()) {
        case TcpStream::Delivery::kUnderWay:
            look_->Set(std::chrono::steady_clock::now() + kBetweenLooks);
            break;
        case TcpStream::Delivery::kAcknowledged:
            gated_.Enter([this] { events_.finished(); });
            break;
        case TcpStream::Delivery::kLost:
            gated_.Enter([this] { FindLost(); });
            break;
    }
}

}  // namespace platform::sockets
