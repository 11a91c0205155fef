#include "platform/sockets/tcp_connection.h"

#include <array>
#include <cerrno>
#include <utility>

namespace platform::sockets {
namespace {

constexpr std::size_t kMostReadAPass = std::size_t{64} << 10;

}  // namespace

TcpConnection::TcpConnection(EventGate& gate, EventLoop& loop, std::unique_ptr<TcpStream> stream,
                             Events events)
    : stream_(std::move(stream)),
      events_(std::move(events)),
      readable_(std::make_unique<GatedWatch>(gate, loop, stream_->Descriptor(), Readiness::kReadable,
                                             [this] { Read(); }))
{}

std::unique_ptr<TcpStream> TcpConnection::TakeStream()
{
    readable_.reset();
    return std::move(stream_);
}

void TcpConnection::Read()
{
    std::array<char, kMostReadAPass> buffer;
    const ssize_t count = stream_->Receive(buffer);
    if (count > 0)
        events_.arrived({buffer.data(), static_cast<std::size_t>(count)});
    else if (count == 0)
        End(stream_->Error());
    else if (errno != EAGAIN && errno != EINTR)
        End(errno);
}

void TcpConnection::End(int error)
{
    readable_.reset();
    // Sending into a connection whose peer has ended it in order reports a broken pipe.
    if (error == 0 || error == EPIPE)
        events_.ended();
    else
        events_.broken(error);
}

}  // namespace platform::sockets
