#include "platform/sockets/lingering_connections.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace platform::sockets {
namespace {

constexpr std::chrono::seconds kLongestLinger{30};
constexpr std::size_t kMostReadAPass = std::size_t{64} << 10;

}  // namespace

class LingeringConnections::Connection {
public:
    Connection(LingeringConnections& owner, std::unique_ptr<TcpStream> stream)
        : owner_(owner),
          stream_(std::move(stream)),
          end_(owner.loop_.NewAlarm([this] { owner_.Remove(*this); })),
          readable_(
              owner.loop_.Observe(stream_->Descriptor().Number(), Readiness::kReadable, [this] { Drain(); }))
    {
        end_->Set(std::chrono::steady_clock::now() + kLongestLinger);
        stream_->onIdle = [this] { FinishIfDone(); };
    }

    /// May destroy this object.
    void FinishIfDone()
    {
        if (!stream_->IsIdle())
            return;
        stream_->EndSending();
        if (peerEnded_ || stream_->Error() != 0)
            owner_.Remove(*this);
    }

private:
    void Drain()
    {
        std::array<char, kMostReadAPass> dropped;
        const ssize_t count = stream_->Receive(dropped);
        if (count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR)))
            return;
        readable_->SetEnabled(false);
        peerEnded_ = true;
        FinishIfDone();
    }

    LingeringConnections& owner_;
    std::unique_ptr<TcpStream> stream_;
    bool peerEnded_ = false;
    std::unique_ptr<Alarm> end_;
    std::unique_ptr<Watch> readable_;
};

LingeringConnections::LingeringConnections(EventLoop& loop) : loop_(loop) {}

LingeringConnections::~LingeringConnections() = default;

void LingeringConnections::Add(std::unique_ptr<TcpStream> stream)
{
    auto added = std::make_unique<Connection>(*this, std::move(stream));
    Connection& connection = *connections_.emplace_back(std::move(added));
    connection.FinishIfDone();
}

void LingeringConnections::Remove(const Connection& connection)
{
    std::erase_if(connections_, [&](const auto& one) { return one.get() == &connection; });
}

}  // namespace platform::sockets
