#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <functional>
#include <memory>

#include "platform/event_gate.h"
#include "platform/posix/file_descriptor.h"

namespace platform::sockets {

/// Brings the events of one object through the gate. Events that still wait when it is destroyed never run.
/// An event may destroy it.
class GatedEvents {
public:
    explicit GatedEvents(EventGate& gate) : gate_(gate) {}

    /// For what the event loop raises: runs the event at once, or when the gate opens.
    void Enter(EventGate::Event event);

    /// For what arises inside a call: the event comes from the event loop.
    void Post(EventGate::Event event);

private:
    EventGate& gate_;
    QObject posted_;
    /// Expires with this object; what it points to means nothing.
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

/// Watches a descriptor and reacts through the gate. While a reaction waits at the gate the descriptor is not
/// watched, so that one that stays ready does not keep the event loop busy. The reaction may destroy it.
class GatedNotifier {
public:
    GatedNotifier(EventGate& gate, const FileDescriptor& descriptor, QSocketNotifier::Type type,
                  std::function<void()> react);

private:
    GatedEvents events_;
    QSocketNotifier notifier_;
    std::function<void()> react_;
};

}  // namespace platform::sockets
