#pragma once

#include <QSocketNotifier>

#include "platform/event_loop.h"

namespace platform::window {

/// Lets the program's event loop do its passes inside Qt's, modal dialogs included.
class LoopBridge {
public:
    /// The loop outlives the bridge.
    explicit LoopBridge(EventLoop& loop);

    /// One pass of both loops, for a handler that pauses.
    void RunPass();

private:
    EventLoop& loop_;
    QSocketNotifier passIsDue_;
};

}  // namespace platform::window
