#include "play/held_timer.h"

#include <utility>

#include "platform/event_gate.h"

namespace player {

HeldTimer::HeldTimer(platform::Timer& real, int ticksAtOnce, Events events)
    : real_(real), ticksAtOnce_(ticksAtOnce), events_(std::move(events))
{
    real_.OnTimer = [this] { Tick(); };
}

void HeldTimer::SetEnabled(bool enabled)
{
    enabled_ = enabled;
    real_.SetEnabled(enabled_ && !held_);
}

void HeldTimer::Hold()
{
    held_ = true;
    real_.SetEnabled(false);
}

void HeldTimer::Release()
{
    held_ = false;
    real_.SetEnabled(enabled_);
}

void HeldTimer::Tick()
{
    for (int ticks = 0; ticks < ticksAtOnce_ && enabled_; ++ticks) {
        if (!events_.mayTick()) {
            Hold();
            events_.held();
            return;
        }
        platform::Raise(OnTimer);
    }
    if (!enabled_)
        events_.stopped();
}

}  // namespace player
