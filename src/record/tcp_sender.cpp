#include "record/tcp_sender.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <utility>

#include "platform/failure.h"
#include "platform/sockets/socket.h"
#include "platform/sockets/socket_address.h"

namespace record {
namespace {

using platform::sockets::SetOption;

constexpr std::size_t kMostARead = std::size_t{128} << 10;
constexpr std::size_t kMostAnswersWaiting = std::size_t{1} << 20;

/// A till that loses its power says no farewell. It is given up after a minute, so that the next is served.
void NoticeThatItIsGone(const platform::FileDescriptor& socket)
{
    constexpr int kIdleSeconds = 30;
    constexpr int kSecondsBetween = 10;
    constexpr int kTries = 3;
    SetOption(socket, SOL_SOCKET, SO_KEEPALIVE, 1);
    SetOption(socket, IPPROTO_TCP, TCP_KEEPIDLE, kIdleSeconds);
    SetOption(socket, IPPROTO_TCP, TCP_KEEPINTVL, kSecondsBetween);
    SetOption(socket, IPPROTO_TCP, TCP_KEEPCNT, kTries);
}

}  // namespace

TcpSender::TcpSender(const Surroundings& surroundings, platform::FileDescriptor socket,
                     std::function<void()> gone)
    : around_(surroundings),
      name_(platform::sockets::SocketAddress::OfPeer(socket.Number()).Text()),
      gone_(std::move(gone)),
      stream_(around_.loop, std::move(socket), answersWaiting_),
      buffer_(kMostARead),
      intake_(surroundings, [this] { return Read(); })
{
    NoticeThatItIsGone(stream_.Descriptor());
    around_.recorder.SetSender(name_);
    around_.console.Say(name_ + " is connected");
    if (around_.options.forward) {
        tap_ = std::make_unique<Tap>(
            surroundings, *around_.options.forward,
            Tap::Events{.answered = [this](std::string_view bytes) { SendAnswer(bytes); },
                        .finished = [this] { gone_(); }});
        stream_.onIdle = [this] { tap_->SetAnswersWanted(true); };
    }
    readable_.emplace(around_.loop, stream_.Descriptor(), platform::Readiness::kReadable, [this] {
        if (Read() == Outcome::kNothing)
            readable_->Rest();
    });
}

TcpSender::Outcome TcpSender::Read()
{
    const auto received = stream_.Receive(buffer_);
    if (received.bytes > 0) {
        TakeBytes({buffer_.data(), received.bytes});
        return Outcome::kRead;
    }
    if (received.error && platform::sockets::IsPassing(received.error))
        return Outcome::kNothing;
    HasEnded(received.ended ? "has ended"
                            : platform::sockets::SocketFailure(received.error, "is gone").Description());
    return Outcome::kEnded;
}

/// The receiver of a tap comes first: it is the one that must not notice.
void TcpSender::TakeBytes(std::string_view bytes)
{
    const auto recordBegin = intake_.Add(bytes);
    if (tap_)
        tap_->PassOn(bytes, recordBegin);
    intake_.Flush();
}

void TcpSender::SendAnswer(std::string_view bytes)
{
    try {
        stream_.Send(bytes);
    } catch (const platform::Failure&) {
        // The connection is lost, which reading finds out as well and tells, or there is no memory for the answer.
    }
    if (answersWaiting_ > kMostAnswersWaiting)
        tap_->SetAnswersWanted(false);
}

void TcpSender::HasEnded(const std::string& how)
{
    readable_.reset();
    intake_.Finish();
    around_.console.Say(name_ + " " + how);
    if (tap_)
        tap_->Finish();
    else
        gone_();
}

}  // namespace record
