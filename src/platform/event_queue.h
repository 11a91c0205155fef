#pragma once

namespace platform {

/// The queue of window and socket events, for a handler that pauses.
class EventQueue {
public:
    virtual ~EventQueue() = default;

    /// Lets pending events in, one pass of the queue; their handlers run inside this call.
    virtual void ProcessPending() = 0;
};

}  // namespace platform
