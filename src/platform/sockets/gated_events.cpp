#include "platform/sockets/gated_events.h"

#include <utility>

namespace platform::sockets {

void GatedEvents::Enter(EventGate::Event event)
{
    gate_.Enter([alive = std::weak_ptr(alive_), event = std::move(event)] {
        if (!alive.expired())
            event();
    });
}

void GatedEvents::Post(EventGate::Event event)
{
    QMetaObject::invokeMethod(
        &posted_, [this, event = std::move(event)] { Enter(event); }, Qt::QueuedConnection);
}

GatedNotifier::GatedNotifier(EventGate& gate, const FileDescriptor& descriptor, QSocketNotifier::Type type,
                             std::function<void()> react)
    : events_(gate), notifier_(descriptor.Number(), type), react_(std::move(react))
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_, [this] {
        notifier_.setEnabled(false);
        events_.Enter([this] {
            notifier_.setEnabled(true);
            react_();
        });
    });
}

}  // namespace platform::sockets
