#include "platform/sockets/tcp_stream.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <utility>

#include "platform/sockets/open_socket.h"
#include "platform/sockets/socket_error.h"

namespace platform::sockets {

TcpStream::TcpStream(EventLoop& loop, FileDescriptor socket, std::size_t& waitingInAll)
    : loop_(loop), socket_(std::move(socket)), queue_(waitingInAll)
{
    SetOption(socket_, IPPROTO_TCP, TCP_NODELAY, 1);
    SetOption(socket_, SOL_SOCKET, SO_KEEPALIVE, 1);
}

void TcpStream::Send(std::string_view bytes)
{
    if (bytes.empty())
        return;
    if (bytes.size() > SendQueue::kMostWaiting)
        throw SocketFailure(EAGAIN, "Cannot send the record");
    const std::size_t sent = IsIdle() ? SendNow(bytes) : 0;
    if (error_ != 0)
        throw SocketFailure(error_, "Cannot send the record");
    if (sent == 0 && queue_.IsTooMuch(bytes.size()))
        throw SocketFailure(EAGAIN, "Cannot send the record");
    if (sent == bytes.size())
        return;
    queue_.Append(bytes.substr(sent));
    if (!writable_)
        writable_ = loop_.Observe(socket_.Number(), Readiness::kWritable, [this] { SendWaiting(); });
}

ssize_t TcpStream::Receive(std::span<char> buffer)
{
    return ::recv(socket_.Number(), buffer.data(), buffer.size(), 0);
}

void TcpStream::EndSending()
{
    ::shutdown(socket_.Number(), SHUT_WR);
}

std::size_t TcpStream::SendNow(std::string_view bytes)
{
    if (error_ != 0)
        return 0;
    const ssize_t sent = ::send(socket_.Number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent >= 0)
        return static_cast<std::size_t>(sent);
    if (errno != EAGAIN && errno != EINTR)
        error_ = errno;
    return 0;
}

void TcpStream::SendWaiting()
{
    error_ = queue_.SendTo(socket_);
    if (error_ != 0)
        queue_.Clear();
    if (!IsIdle())
        return;
    writable_.reset();
    if (onIdle)
        onIdle();
}

}  // namespace platform::sockets
