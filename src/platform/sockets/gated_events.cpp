#include "platform/sockets/gated_events.h"

#include <chrono>
#include <utility>

#include "platform/failure.h"

namespace platform::sockets {
namespace {

constexpr std::chrono::milliseconds kRest{10};

}  // namespace

void GatedEvents::Enter(EventGate::Event event)
{
    gate_.Enter([alive = std::weak_ptr(alive_), event = std::move(event)] {
        if (!alive.expired())
            event();
    });
}

void GatedEvents::Post(EventGate::Event event)
{
    loop_.Post([this, alive = std::weak_ptr(alive_), event = std::move(event)] {
        if (!alive.expired())
            Enter(event);
    });
}

RestingWatch::RestingWatch(EventLoop& loop, const FileDescriptor& descriptor, Readiness readiness,
                           std::function<void()> react)
    : loop_(loop), watch_(loop.Observe(descriptor.Number(), readiness, std::move(react)))
{}

void RestingWatch::SetEnabled(bool enabled)
{
    try {
        watch_->SetEnabled(enabled);
    } catch (const Failure&) {
        Rest();
    }
}

void RestingWatch::Rest()
{
    watch_->SetEnabled(false);
    if (!end_)
        end_ = loop_.NewAlarm([this] { SetEnabled(true); });
    end_->Set(std::chrono::steady_clock::now() + kRest);
}

GatedWatch::GatedWatch(EventGate& gate, EventLoop& loop, const FileDescriptor& descriptor,
                       Readiness readiness, std::function<void()> react)
    : gate_(gate), react_(std::move(react)), watch_(loop, descriptor, readiness, [this] { Ready(); })
{}

void GatedWatch::Ready()
{
    const std::weak_ptr<bool> alive = waits_;
    *waits_ = true;
    gate_.Enter([this, alive] {
        const auto waits = alive.lock();
        if (!waits)
            return;
        *waits = false;
        watch_.SetEnabled(true);
        react_();
    });
    // A free gate has run the reaction: the watch never had to be muted.
    if (const auto waits = alive.lock(); waits && *waits)
        watch_.SetEnabled(false);
}

}  // namespace platform::sockets
