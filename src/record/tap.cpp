#include "record/tap.h"

#include <utility>

#include "platform/failure.h"
#include "platform/sockets/socket.h"

namespace record {
namespace {

using std::chrono::steady_clock;

constexpr std::size_t kMostARead = std::size_t{64} << 10;

/// How long the receiver may still answer when the sender has ended.
constexpr std::chrono::seconds kFarewell{2};

}  // namespace

Tap::Tap(const Surroundings& surroundings, const HostAndPort& receiver, Events events)
    : around_(surroundings),
      events_(std::move(events)),
      name_("receiver " + receiver.host + " port " + std::to_string(receiver.port)),
      dialer_(surroundings, receiver,
              {.connected = [this](platform::FileDescriptor socket) { Connected(std::move(socket)); },
               .failed = [this](const std::string& reason) { AttemptFailed(reason); }}),
      buffer_(kMostARead),
      farewell_(around_.loop.NewAlarm([this] { events_.finished(); })),
      broken_(around_.loop.NewAlarm([this] {
          if (receiver_ && receiver_->Error())
              ConnectionIsLost(receiver_->Error());
      }))
{
    dialer_.Start();
}

Tap::~Tap()
{
    around_.recorder.Counts().notPassedOn += waiting_ + (early_ ? early_->size() : 0);
}

void Tap::PassOn(std::string_view bytes, std::optional<std::size_t> recordBegin)
{
    const std::size_t begin = recordBegin.value_or(bytes.size());
    if (isInRecord_)
        Send(bytes.substr(0, begin));
    else
        LeaveOut(begin);
    if (!recordBegin)
        return;
    isInRecord_ = CanBeginRecord();
    if (isInRecord_)
        Send(bytes.substr(begin));
    else
        LeaveOut(bytes.size() - begin);
}

/// A receiver that was too slow gets records again when half of what waited is gone.
bool Tap::CanBeginRecord()
{
    if (!early_ && !receiver_)
        return false;
    const std::size_t waiting = early_ ? early_->size() : waiting_;
    isTooSlow_ = waiting >= (isTooSlow_ ? kMostWaiting / 2 : kMostWaiting);
    if (isTooSlow_ && !std::exchange(saidTooSlow_, true))
        around_.console.Say(name_ + " takes too little; records are left out");
    return !isTooSlow_;
}

void Tap::Send(std::string_view bytes)
{
    if (bytes.empty())
        return;
    if (early_) {
        *early_ += bytes;
        return;
    }
    try {
        receiver_->Send(bytes);
    } catch (const platform::Failure& failure) {
        LeaveOut(bytes.size());
        ReceiverIsGone(failure.Description());
    }
}

void Tap::LeaveOut(std::size_t bytes)
{
    around_.recorder.Counts().notPassedOn += bytes;
}

void Tap::SetAnswersWanted(bool wanted)
{
    answersWanted_ = wanted;
    if (readable_)
        readable_->SetEnabled(wanted);
}

void Tap::Connected(platform::FileDescriptor socket)
{
    if (!early_)
        around_.console.Say(name_ + " is back");
    receiver_ = std::make_unique<platform::sockets::TcpStream>(around_.loop, std::move(socket), waiting_);
    receiver_->onIdle = [this] { FinishIfDone(); };
    // Not at once: it may come from inside a send.
    receiver_->onBroken = [this] { broken_->Set(std::chrono::steady_clock::now()); };
    isTooSlow_ = false;
    saidTooSlow_ = false;
    readable_.emplace(around_.loop, receiver_->Descriptor(), platform::Readiness::kReadable,
                      [this] { ReadAnswers(); });
    readable_->SetEnabled(answersWanted_);
    if (const auto early = std::exchange(early_, std::nullopt))
        Send(*early);
    FinishIfDone();
}

void Tap::AttemptFailed(const std::string& reason)
{
    const auto early = std::exchange(early_, std::nullopt);
    if (!early)
        return;
    isInRecord_ = false;
    LeaveOut(early->size());
    around_.console.Say(reason + "; tried again until it is there, the recording goes on");
    FinishIfDone();
}

void Tap::ReadAnswers()
{
    const auto received = receiver_->Receive(buffer_);
    if (received.bytes > 0)
        events_.answered({buffer_.data(), received.bytes});
    else if (receiver_->Error())
        ConnectionIsLost(receiver_->Error());
    else if (received.ended)
        ReceiverIsGone("it has ended the connection");
    else if (platform::sockets::IsPassing(received.error))
        readable_->Rest();
    else
        ConnectionIsLost(received.error);
}

void Tap::ConnectionIsLost(const std::error_code& error)
{
    ReceiverIsGone(platform::sockets::SocketFailure(error, "the connection is lost").Description());
}

void Tap::ReceiverIsGone(const std::string& reason)
{
    readable_.reset();
    const std::size_t unsent = receiver_->Progress().unacknowledged;
    receiver_.reset();
    isInRecord_ = false;
    LeaveOut(unsent);
    if (!isFinishing_) {
        around_.console.Say(name_ + " is gone: " + reason + "; tried again until it is back");
        dialer_.StartLater();
    }
    FinishIfDone();
}

void Tap::Finish()
{
    isFinishing_ = true;
    farewell_->Set(steady_clock::now() + kFarewell);
    FinishIfDone();
}

/// Once the receiver has all and is told of the end, its own end is waited for.
void Tap::FinishIfDone()
{
    if (!isFinishing_ || early_)
        return;
    if (receiver_ && !receiver_->Error()) {
        if (receiver_->IsIdle())
            receiver_->EndSending();
        return;
    }
    farewell_->Set(steady_clock::now());
}

}  // namespace record
