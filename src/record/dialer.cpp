#include "record/dialer.h"

#include <utility>

#include "platform/failure.h"
#include "platform/sockets/socket.h"

namespace record {
namespace {

using platform::sockets::SocketAddress;
using std::chrono::steady_clock;

/// A host that is off does not answer at all. The system itself would wait for two minutes.
constexpr std::chrono::seconds kPatience{10};

}  // namespace

Dialer::Dialer(const Surroundings& surroundings, HostAndPort target, Events events)
    : around_(surroundings),
      target_(std::move(target)),
      events_(std::move(events)),
      lookup_(around_.gate, around_.loop),
      next_(around_.loop.NewAlarm([this] { Start(); })),
      patience_(around_.loop.NewAlarm(
          [this] { Failed("Cannot connect to " + target_.host + ": it does not answer"); }))
{}

void Dialer::Start()
{
    patience_->Set(steady_clock::now() + kPatience);
    Try([this] {
        if (const auto address = platform::sockets::AddressFromText(target_.host))
            Connect({*address});
        else
            lookup_.Start(target_.host, [this](const std::vector<SocketAddress>& addresses) {
                Try([&] { Connect(addresses); });
            });
    });
}

/// What the system refuses now it may give at the next attempt.
void Dialer::Try(const std::function<void()>& step)
{
    try {
        step();
    } catch (const platform::Failure& failure) {
        Failed(failure.Description());
    }
}

void Dialer::StartLater()
{
    next_->Set(steady_clock::now() + kPause);
}

void Dialer::Connect(std::vector<SocketAddress> addresses)
{
    if (addresses.empty()) {
        Failed("Host not found: " + target_.host);
        return;
    }
    for (SocketAddress& address : addresses)
        address.SetPort(target_.port);
    connector_ = std::make_unique<platform::sockets::TcpConnector>(
        around_.gate, around_.loop, std::move(addresses),
        platform::sockets::TcpConnector::Events{
            .connected = [this](platform::FileDescriptor socket) { Connected(std::move(socket)); },
            .failed =
                [this](const std::error_code& error, const SocketAddress& address) {
                    Failed(platform::sockets::SocketFailure(error, "Cannot connect to " + address.Text())
                               .Description());
                }});
    connector_->StartQuietly();
}

void Dialer::Connected(platform::FileDescriptor socket)
{
    patience_->Clear();
    connector_.reset();
    events_.connected(std::move(socket));
}

void Dialer::Failed(const std::string& reason)
{
    lookup_.Cancel();
    connector_.reset();
    patience_->Clear();
    StartLater();
    events_.failed(reason);
}

}  // namespace record
