#pragma once

#include <QSocketNotifier>

#include "platform/event_loop.h"

namespace platform::window {

/// Lets the program's event loop do its passes inside Qt's: whenever one is due while Qt's loop runs, that of a modal
/// dialog included.
class LoopBridge {
public:
    /// The loop outlives the bridge.
    explicit LoopBridge(EventLoop& loop);

    /// Lets each of the two loops do one pass, for a handler that pauses. Neither waits.
    void RunPass();

private:
    void RunOwnPass();

    EventLoop& loop_;
    QSocketNotifier passIsDue_;
    bool ownPassWasRun_ = false;
};

}  // namespace platform::window
