#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/event_loop.h"
#include "play/figures.h"
#include "play/station.h"

namespace player {

/// One till with whoever sits before it: he presses Play, waits for the receiver, presses Play again when a lost one is
/// back, sees to it that the last record arrives, and leaves.
class Till {
public:
    enum class State { kReady, kWaiting, kPlaying, kFinishing, kEnded };

    /// Failure: UsageError for settings that cannot be played. Nothing is opened yet.
    Till(const Surroundings& surroundings, TillPlan plan);

    /// Runs the start-up sequence. Failure: UsageError for a database that cannot be played.
    void Load() { station_.Load(); }

    /// Does nothing where the till has ended before.
    void Play();

    /// Stops behind a whole record, lets the receiver take what is under way, and ends.
    void Interrupt();

    /// Ends at once.
    void Abandon();

    [[nodiscard]] State CurrentState() const { return state_; }
    [[nodiscard]] const Station& TheStation() const { return station_; }
    [[nodiscard]] Figures Report() const;

private:
    using Clock = std::chrono::steady_clock;

    void Look();
    void LookWhileWaiting();
    void LookWhilePlaying();
    void Retry();

    void Wait();
    void Begin();
    void AwaitRoom();
    void LoseReceiver();
    void Finish();
    void WatchReceiver();
    [[nodiscard]] bool ReceiverTookMore() const;
    void GiveUp();
    [[nodiscard]] Outcome Reached() const;
    void End(Outcome outcome);
    void LoseWhatIsUnderWay();

    const Surroundings& surroundings_;
    Station station_;
    State state_ = State::kReady;
    bool interrupted_ = false;
    std::unique_ptr<platform::Alarm> patience_;  // for a receiver to come, or to take more
    std::unique_ptr<platform::Alarm> retry_;
    bool awaitsRoom_ = false;           // patience_ is set while playing
    std::int64_t handedOver_ = 0;       // records, and
    std::uint64_t unacknowledged_ = 0;  // bytes, when patience_ was set for a receiver that takes more
    std::optional<Clock::time_point> began_;
    Clock::time_point ended_;
    Outcome outcome_ = Outcome::kFailed;
};

}  // namespace player
