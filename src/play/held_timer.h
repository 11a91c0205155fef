#pragma once

#include <functional>

#include "platform/timer.h"

namespace player {

/// The timer that the logic is given. It holds the ticks back while the till says so, and passes everything else on to a
/// real timer. A tick that is held back is not missed: the schedule starts anew with the release.
class HeldTimer final : public platform::Timer {
public:
    struct Events {
        /// Asked before each tick; false holds the timer.
        std::function<bool()> mayTick;
        /// Behind that.
        std::function<void()> held;
        /// Behind a tick in which the logic has disabled the timer.
        std::function<void()> stopped;
    };

    /// `ticksAtOnce` so many ticks follow each other without a look at the clock where the real timer gives one. The real
    /// timer outlives this one, which begins held.
    HeldTimer(platform::Timer& real, int ticksAtOnce, Events events);

    void SetInterval(int milliseconds) override { real_.SetInterval(milliseconds); }
    void SetEnabled(bool enabled) override;

    void Hold();
    void Release();

    /// As the logic has set it.
    [[nodiscard]] bool IsEnabled() const { return enabled_; }

private:
    void Tick();

    platform::Timer& real_;
    int ticksAtOnce_;
    Events events_;
    bool enabled_ = false;
    bool held_ = true;
};

}  // namespace player
