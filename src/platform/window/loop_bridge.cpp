#include "platform/window/loop_bridge.h"

#include <QCoreApplication>

namespace platform::window {

LoopBridge::LoopBridge(EventLoop& loop) : loop_(loop), passIsDue_(loop.Descriptor(), QSocketNotifier::Read)
{
    QObject::connect(&passIsDue_, &QSocketNotifier::activated, [this] { RunOwnPass(); });
}

void LoopBridge::RunPass()
{
    ownPassWasRun_ = false;
    QCoreApplication::processEvents();
    // Qt may have had something else to do first.
    if (!ownPassWasRun_)
        RunOwnPass();
}

void LoopBridge::RunOwnPass()
{
    ownPassWasRun_ = true;
    loop_.RunPass(Waiting::kNo);
}

}  // namespace platform::window
