#pragma once

#include <deque>
#include <functional>

namespace platform {

/// Lets event handlers in one at a time, each to its end.
///
/// Every event of every component enters here. While a handler runs, other events wait for its end, in the
/// order in which they came; only Pause lets them in earlier. A handler's exception ends at the gate.
class EventGate {
public:
    using Event = std::function<void()>;

    /// Runs the event now, or when the running handler has ended.
    void Enter(Event event);

    /// For the running handler: opens the gate while `pass` runs. What waited is run first.
    void Pause(const std::function<void()>& pass);

private:
    void RunWaiting();

    bool busy_ = false;
    std::deque<Event> waiting_;
};

}  // namespace platform
