#include "platform/qt/event_queue.h"

#include <QCoreApplication>

namespace platform::qt {

void EventQueue::ProcessPending()
{
    timer_.DropDuring([this] { gate_.Pause([] { QCoreApplication::processEvents(); }); });
}

}  // namespace platform::qt
