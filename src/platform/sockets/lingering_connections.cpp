#include "platform/sockets/lingering_connections.h"

#include <array>
#include <chrono>
#include <utility>

#include "platform/sockets/gated_events.h"
#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

constexpr std::size_t kMostReadAPass = std::size_t{64} << 10;

}  // namespace

class LingeringConnections::Connection {
public:
    Connection(LingeringConnections& owner, std::unique_ptr<TcpStream> stream)
        : owner_(owner),
          stream_(std::move(stream)),
          end_(owner.loop_.NewAlarm([this] { owner_.Remove(*this); })),
          readable_(owner.loop_, stream_->Descriptor(), Readiness::kReadable, [this] { Drain(); })
    {
        end_->Set(std::chrono::steady_clock::now() + owner.longest_);
        stream_->onIdle = [this] { FinishIfDone(); };
        stream_->onBroken = [this] { owner_.Remove(*this); };
    }

    /// May destroy this object.
    void FinishIfDone()
    {
        if (stream_->IsIdle())
            stream_->EndSending();
        if (stream_->Error() || (peerEnded_ && stream_->IsIdle()))
            owner_.Remove(*this);
    }

private:
    void Drain()
    {
        std::array<char, kMostReadAPass> dropped;
        const auto received = stream_->Receive(dropped);
        if (IsPassing(received.error)) {
            readable_.Rest();
        } else if (received.bytes == 0) {
            readable_.SetEnabled(false);
            peerEnded_ = true;
            FinishIfDone();
        }
    }

    LingeringConnections& owner_;
    std::unique_ptr<TcpStream> stream_;
    bool peerEnded_ = false;
    std::unique_ptr<Alarm> end_;
    RestingWatch readable_;
};

LingeringConnections::LingeringConnections(EventLoop& loop, std::chrono::milliseconds longest)
    : loop_(loop), longest_(longest)
{}

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
