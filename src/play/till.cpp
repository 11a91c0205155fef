#include "play/till.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace player {
namespace {

using platform::WinsockControl;

constexpr std::chrono::milliseconds kBetweenAttempts{100};
// A name is looked up for UDP without an event that tells the end.
constexpr std::chrono::milliseconds kBetweenLooks{5};
constexpr std::chrono::milliseconds kBetweenTriesForRoom{1};
// Before that no receiver is given up, however short the wait: one attempt takes its time, and so does taking more.
constexpr std::chrono::milliseconds kLeastWait{100};
constexpr std::chrono::milliseconds kLeastPatience{1000};

double Seconds(std::chrono::steady_clock::duration time)
{
    return std::chrono::duration<double>(time).count();
}

std::string InSeconds(std::chrono::milliseconds time)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g s", Seconds(time));
    return text.data();
}

}  // namespace

Till::Till(const Surroundings& surroundings, TillPlan plan)
    : surroundings_(surroundings),
      station_(surroundings, std::move(plan),
               {.changed = [this] { Look(); },
                .held = [this] { AwaitRoom(); },
                .stopped = [this] { Look(); },
                .finished = [this] { End(Reached()); }}),
      patience_(surroundings.machine.loop.NewAlarm([this] { GiveUp(); })),
      retry_(surroundings.machine.loop.NewAlarm([this] { Retry(); }))
{}

void Till::Play()
{
    if (state_ == State::kEnded)
        return;
    Wait();
    // What listens since the start must go on: a receiver may have called already, and Play would turn it away.
    const bool listens = station_.IsTcp() && station_.Socket().State() == WinsockControl::kListening;
    if (!listens)
        station_.TheDesk().PressPlay();
    Look();
}

void Till::Interrupt()
{
    interrupted_ = true;
    if (state_ == State::kPlaying) {
        station_.TheDesk().PressPause();
        Finish();
    } else if (state_ == State::kReady || state_ == State::kWaiting) {
        End(Outcome::kInterrupted);
    }
}

void Till::Abandon()
{
    interrupted_ = true;
    if (state_ == State::kEnded)
        return;
    LoseWhatIsUnderWay();
    End(Outcome::kInterrupted);
}

void Till::Look()
{
    if (state_ == State::kWaiting)
        LookWhileWaiting();
    else if (state_ == State::kPlaying)
        LookWhilePlaying();
    else if (state_ == State::kFinishing && !station_.HasReceiver())
        End(Reached());
}

void Till::LookWhileWaiting()
{
    const auto state = station_.Socket().State();
    if (station_.HasReceiver())
        Begin();
    else if (state == WinsockControl::kClosed || state == WinsockControl::kError)
        retry_->Set(Clock::now() + kBetweenAttempts);
    else if (state == WinsockControl::kConnecting && !station_.IsTcp())
        retry_->Set(Clock::now() + kBetweenLooks);
}

void Till::LookWhilePlaying()
{
    HeldTimer& timer = station_.Timer();
    if (!station_.HasReceiver())
        LoseReceiver();
    else if (!timer.IsEnabled() && station_.ThePace().FeedHasEnded())
        Finish();
    else if (!timer.IsEnabled())
        station_.TheDesk().PressPlay();
    else if (station_.HasRoom())
        timer.Release();
}

void Till::Retry()
{
    const auto state = station_.Socket().State();
    if (state_ == State::kWaiting && (state == WinsockControl::kClosed || state == WinsockControl::kError))
        station_.TheDesk().PressPlay();
    station_.TryForRoom();
    Look();
}

void Till::Wait()
{
    state_ = State::kWaiting;
    station_.Timer().Hold();
    awaitsRoom_ = false;
    patience_->Set(Clock::now() + std::max(surroundings_.options.wait, kLeastWait));
}

void Till::Begin()
{
    state_ = State::kPlaying;
    patience_->Clear();
    retry_->Clear();
    if (!began_)
        began_ = Clock::now();
    // A socket error has stopped the ticks.
    if (!station_.Timer().IsEnabled())
        station_.TheDesk().PressPlay();
    station_.Timer().Release();
}

/// The loss of a receiver has an event of its own.
void Till::AwaitRoom()
{
    if (state_ != State::kPlaying || !station_.HasReceiver())
        return;
    if (!station_.IsTcp())
        retry_->Set(Clock::now() + kBetweenTriesForRoom);
    if (!std::exchange(awaitsRoom_, true))
        WatchReceiver();
}

void Till::LoseReceiver()
{
    if (!station_.Settings().reconnect) {
        End(Reached());
        return;
    }
    Wait();
    Look();
}

void Till::Finish()
{
    state_ = State::kFinishing;
    station_.Timer().Hold();
    // A connection may be lost before its event has told so.
    if (!station_.IsTcp() || !station_.HasReceiver()) {
        LoseWhatIsUnderWay();
        End(Reached());
        return;
    }
    station_.Socket().Finish();
    WatchReceiver();
}

void Till::WatchReceiver()
{
    handedOver_ = station_.Counts().Records();
    unacknowledged_ = station_.Unacknowledged();
    patience_->Set(Clock::now() + std::max(surroundings_.options.wait, kLeastPatience));
}

bool Till::ReceiverTookMore() const
{
    return station_.Counts().Records() > handedOver_ || station_.Unacknowledged() < unacknowledged_;
}

/// The receiver has not come in time, or takes nothing more.
void Till::GiveUp()
{
    awaitsRoom_ = false;
    if (state_ == State::kPlaying && (station_.HasRoom() || ReceiverTookMore())) {
        if (!station_.HasRoom())
            AwaitRoom();
        return;
    }
    if (state_ == State::kFinishing && ReceiverTookMore()) {
        WatchReceiver();
        return;
    }
    const std::string target = Target(station_.Settings());
    const std::string within = " within " + InSeconds(surroundings_.options.wait);
    if (state_ == State::kFinishing || state_ == State::kPlaying) {
        station_.AddError("The receiver at " + target + " took no more" + within);
        LoseWhatIsUnderWay();
    } else {
        station_.AddError("No receiver came at " + target + within);
    }
    End(Reached());
}

void Till::LoseWhatIsUnderWay()
{
    station_.Counts().Lost(station_.Unacknowledged());
}

/// What has become of the feed, if it ends now.
Outcome Till::Reached() const
{
    const Tally& counts = station_.Counts();
    if (interrupted_)
        return Outcome::kInterrupted;
    if (!began_ || (station_.ThePace().FeedHasEnded() && counts.Refused() > 0))
        return Outcome::kFailed;
    return station_.ThePace().FeedHasEnded() && counts.InDoubt() == 0 ? Outcome::kComplete : Outcome::kLost;
}

void Till::End(Outcome outcome)
{
    state_ = State::kEnded;
    outcome_ = outcome;
    ended_ = Clock::now();
    patience_->Clear();
    retry_->Clear();
    station_.Timer().Hold();
    station_.Socket().Close();
    surroundings_.ended();
}

Figures Till::Report() const
{
    const Tally& counts = station_.Counts();
    return {
        .name = station_.Name(),
        .target = Target(station_.Settings()),
        .outcome = outcome_,
        .records = counts.Records(),
        .bytes = counts.Bytes(),
        .seconds = began_ ? Seconds(ended_ - *began_) : 0,
        .recordsRefused = counts.Refused(),
        .recordsInDoubt = counts.InDoubt(),
        .connections = counts.Connections(),
        .lateness = station_.ThePace().Measured(),
        .late = station_.ThePace().Late(),
        .errors = station_.Errors().Errors(),
    };
}

}  // namespace player
