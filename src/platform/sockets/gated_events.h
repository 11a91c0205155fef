#pragma once

#include <functional>
#include <memory>

#include "platform/event_gate.h"
#include "platform/event_loop.h"
#include "platform/posix/file_descriptor.h"

namespace platform::sockets {

/// Brings the events of one object through the gate. Events that still wait when it is destroyed never run.
/// An event may destroy it.
class GatedEvents {
public:
    /// Both are borrowed and outlive it.
    GatedEvents(EventGate& gate, EventLoop& loop) : gate_(gate), loop_(loop) {}

    /// For what the event loop raises: runs the event at once, or when the gate opens.
    void Enter(EventGate::Event event);

    /// For what arises inside a call: the event comes with the next pass of the event loop.
    void Post(EventGate::Event event);

    /// Events that still wait never run.
    void Drop() { alive_ = std::make_shared<bool>(true); }

private:
    EventGate& gate_;
    EventLoop& loop_;
    /// Expires when the waiting events are dropped. Only its lifetime counts.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

/// Watches a descriptor and can rest for a moment: one that stays ready while each call on it fails would keep
/// a core busy.
class RestingWatch {
public:
    /// The loop is borrowed and outlives it. Failure: as of EventLoop::Observe.
    RestingWatch(EventLoop& loop, const FileDescriptor& descriptor, Readiness readiness,
                 std::function<void()> react);

    /// Where the system refuses to watch again, it is asked once more after a rest.
    void SetEnabled(bool enabled);

    /// No reaction for 10 ms.
    void Rest();

private:
    EventLoop& loop_;
    std::unique_ptr<Watch> watch_;
    std::unique_ptr<Alarm> end_;  // of the rest; none before the first
};

/// Watches a descriptor and reacts through the gate. While a reaction waits at the gate the descriptor is not
/// watched, so that one that stays ready does not keep the event loop busy. The reaction may destroy it.
class GatedWatch {
public:
    /// Failure: as of EventLoop::Observe.
    GatedWatch(EventGate& gate, EventLoop& loop, const FileDescriptor& descriptor, Readiness readiness,
               std::function<void()> react);

    /// For the reaction whose call has failed in passing: the next reaction comes after 10 ms.
    void Rest() { watch_.Rest(); }

private:
    void Ready();

    EventGate& gate_;
    std::function<void()> react_;
    /// True while the reaction waits at the gate. It expires with this object.
    std::shared_ptr<bool> waits_ = std::make_shared<bool>(false);
    RestingWatch watch_;
};

}  // namespace platform::sockets
