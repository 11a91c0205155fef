#pragma once

#include <deque>
#include <functional>

namespace platform {

/// Runs event handlers one at a time, each to its end.
///
/// Every event of every component enters here. While a handler runs, other events wait for its end, in the
/// order in which they came; only Pause runs them earlier. What a handler throws ends here.
class EventGate {
public:
    using Event = std::function<void()>;

    /// Runs the event now, or when the running handler has ended.
    void Enter(Event event);

    /// Called by the running handler: runs the events that wait, and then `pass`, during which events run as if no
    /// handler did.
    void Pause(const std::function<void()>& pass);

private:
    void RunWaiting();

    bool busy_ = false;
    std::deque<Event> waiting_;
};

/// Runs the handler of an event, where one is set.
template <class Handler, class... Arguments>
void Raise(const Handler& handler, const Arguments&... arguments)
{
    if (handler)
        handler(arguments...);
}

/// Where a handler pauses, so that events of window and sockets can run in between.
class EventQueue {
public:
    virtual ~EventQueue() = default;

    /// Runs the events that wait and what one pass of the event loop brings; their handlers run inside this call.
    virtual void ProcessPending() = 0;
};

}  // namespace platform
