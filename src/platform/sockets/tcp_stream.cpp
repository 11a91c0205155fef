#include "platform/sockets/tcp_stream.h"

#include <linux/sockios.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

Failure ReceiverTakesNoMore()
{
    return {failure::kSocketWouldBlock, "Cannot send the record: the receiver takes no more at the moment"};
}

bool IsClosed(const FileDescriptor& socket)
{
    tcp_info info{};
    socklen_t size = sizeof info;
    return ::getsockopt(socket.Number(), IPPROTO_TCP, TCP_INFO, &info, &size) == 0 &&
           info.tcpi_state == TCP_CLOSE;
}

}  // namespace

TcpStream::TcpStream(EventLoop& loop, FileDescriptor socket, std::size_t& waitingInAll)
    : loop_(loop), socket_(std::move(socket)), queue_(waitingInAll)
{
    SetOption(socket_, IPPROTO_TCP, TCP_NODELAY, 1);
    SetOption(socket_, SOL_SOCKET, SO_KEEPALIVE, 1);
}

TcpStream::~TcpStream()
{
    if (!IsIdle())
        ResetOnClose(socket_);
}

void TcpStream::Send(std::string_view bytes)
{
    if (bytes.size() > SendQueue::kMostWaiting)
        throw ReceiverTakesNoMore();
    const std::size_t sent = IsIdle() && !error_ && !bytes.empty() ? SendNow(bytes) : 0;
    if (error_)
        throw SocketFailure(error_, "Cannot send the record");
    if (sent == 0 && queue_.IsTooMuch(bytes.size()))
        throw ReceiverTakesNoMore();
    accepted_ += bytes.size();
    if (sent == bytes.size())
        return;
    queue_.Append(bytes.substr(sent));
    if (!writable_)
        AwaitRoom();
}

TcpStream::Received TcpStream::Receive(std::span<char> buffer)
{
    const ssize_t count = ::recv(socket_.Number(), buffer.data(), buffer.size(), 0);
    if (count < 0)
        return {.bytes = 0, .ended = false, .error = LastError()};
    return {.bytes = static_cast<std::size_t>(count), .ended = count == 0, .error = {}};
}

void TcpStream::EndSending()
{
    ::shutdown(socket_.Number(), SHUT_WR);
    endSent_ = true;
}

TcpProgress TcpStream::Progress() const
{
    // The system counts an end that is on its way as one more byte.
    const auto bytes = [this](std::uint64_t count) { return count - (endSent_ && count > 0 ? 1 : 0); };
    return {.accepted = accepted_,
            .unsent = WaitingBytes() + bytes(Count(SIOCOUTQNSD)),
            .unacknowledged = WaitingBytes() + bytes(Count(SIOCOUTQ))};
}

TcpStream::Delivery TcpStream::EndDelivered() const
{
    if (error_)
        return Delivery::kLost;
    if (!endSent_)
        return Delivery::kUnderWay;
    if (Count(SIOCOUTQ) == 0)
        return Delivery::kAcknowledged;
    return IsClosed(socket_) ? Delivery::kLost : Delivery::kUnderWay;
}

std::size_t TcpStream::SendNow(std::string_view bytes)
{
    const ssize_t sent = ::send(socket_.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent >= 0)
        return static_cast<std::size_t>(sent);
    if (const auto error = LastError(); !IsPassing(error))
        Break(error);
    return 0;
}

/// What nobody watches would wait for ever.
void TcpStream::AwaitRoom()
{
    try {
        writable_.emplace(loop_, socket_, Readiness::kWritable, [this] { SendWaiting(); });
    } catch (const Failure&) {
        Break(make_error_code(std::errc::not_enough_memory));
        throw;
    }
}

void TcpStream::SendWaiting()
{
    const auto error = queue_.SendTo(socket_);
    if (error && !IsPassing(error)) {
        Break(error);
    } else if (error) {
        writable_->Rest();
    } else if (IsIdle()) {
        writable_.reset();
        if (onIdle)
            onIdle();
    }
}

void TcpStream::Break(const std::error_code& error)
{
    error_ = error;
    writable_.reset();
    if (onBroken)
        onBroken();
}

std::uint64_t TcpStream::Count(unsigned long request) const
{
    int count = 0;
    return ::ioctl(socket_.Number(), request, &count) == 0 ? static_cast<std::uint64_t>(count) : 0;
}

}  // namespace platform::sockets
