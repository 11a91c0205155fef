#include "platform/event_gate.h"

#include <utility>

namespace platform {

void EventGate::Enter(Event event)
{
    waiting_.push_back(std::move(event));
    if (!busy_)
        RunWaiting();
}

void EventGate::Pause(const std::function<void()>& pass)
{
    struct Closing {
        bool& busy;
        ~Closing() { busy = true; }
    };
    const Closing closing{busy_};
    busy_ = false;
    RunWaiting();
    pass();
}

void EventGate::RunWaiting()
{
    while (!waiting_.empty()) {
        const Event event = std::move(waiting_.front());
        waiting_.pop_front();
        busy_ = true;
        try {
            event();
        } catch (...) {
            // The handler has recorded what it wants recorded.
        }
        busy_ = false;
    }
}

}  // namespace platform
