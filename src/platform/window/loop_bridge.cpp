#include "platform/window/loop_bridge.h"

#include <QCoreApplication>

namespace platform::window {

LoopBridge::LoopBridge(EventLoop& loop) : loop_(loop), passIsDue_(loop.Descriptor(), QSocketNotifier::Read)
{
    QObject::connect(&passIsDue_, &QSocketNotifier::activated, [this] { loop_.RunPass(Waiting::kNo); });
}

void LoopBridge::RunPass()
{
    loop_.RunPass(Waiting::kNo);
    QCoreApplication::processEvents();
}

}  // namespace platform::window
