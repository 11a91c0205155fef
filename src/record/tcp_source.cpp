#include "record/tcp_source.h"

#include <sys/socket.h>

#include <string>
#include <utility>

#include "platform/sockets/socket.h"
#include "platform/sockets/socket_address.h"
#include "record/local_port.h"

namespace record {

TcpListenSource::TcpListenSource(const Surroundings& surroundings)
    : around_(surroundings),
      socket_(OpenLocalPort(surroundings.options.at, SOCK_STREAM)),
      readable_(around_.loop, socket_, platform::Readiness::kReadable, [this] { AcceptOne(); })
{
    const auto address = platform::sockets::SocketAddress::OfSocket(socket_.Number());
    if (::listen(socket_.Number(), SOMAXCONN) != 0)
        throw platform::sockets::SocketFailure(platform::LastError(), "Cannot listen on " + address.Text());
    around_.console.Say("waiting for a till on port " + std::to_string(address.Port()));
}

void TcpListenSource::Finish()
{
    if (sender_)
        sender_->Finish();
}

void TcpListenSource::AcceptOne()
{
    platform::FileDescriptor socket(
        ::accept4(socket_.Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket.IsOpen()) {
        const auto reason = platform::LastError();
        if (!platform::sockets::IsPassing(reason) && !std::exchange(saidThatNobodyCanCome_, true))
            around_.console.Say(
                platform::sockets::SocketFailure(reason, "a till cannot be accepted").Description());
        readable_.Rest();
        return;
    }
    saidThatNobodyCanCome_ = false;
    readable_.SetEnabled(false);
    sender_ = std::make_unique<TcpSender>(around_, std::move(socket), [this] { SenderIsGone(); });
}

void TcpListenSource::SenderIsGone()
{
    sender_.reset();
    readable_.SetEnabled(true);
}

TcpConnectSource::TcpConnectSource(const Surroundings& surroundings)
    : around_(surroundings),
      dialer_(surroundings, surroundings.options.at,
              {.connected = [this](platform::FileDescriptor socket) { Connected(std::move(socket)); },
               .failed = [this](const std::string& reason) { AttemptFailed(reason); }})
{
    dialer_.Start();
}

void TcpConnectSource::Finish()
{
    if (sender_)
        sender_->Finish();
}

void TcpConnectSource::Connected(platform::FileDescriptor socket)
{
    saidThatItIsAway_ = false;
    sender_ = std::make_unique<TcpSender>(around_, std::move(socket), [this] { SenderIsGone(); });
}

void TcpConnectSource::AttemptFailed(const std::string& reason)
{
    if (!std::exchange(saidThatItIsAway_, true))
        around_.console.Say(reason + "; tried again until it is there");
}

void TcpConnectSource::SenderIsGone()
{
    sender_.reset();
    dialer_.StartLater();
}

}  // namespace record
