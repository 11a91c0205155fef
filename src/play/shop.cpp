#include "play/shop.h"

#include <algorithm>
#include <new>
#include <set>
#include <utility>

#include "play/descriptor_limit.h"
#include "play/exit_status.h"
#include "play/usage_error.h"

namespace player {
namespace {

// For what comes and goes: looking up names, reading settings.
constexpr std::int64_t kSpareDescriptors = 8;

/// Sockets that a till has open at the same time at most: one that listens beside the one that was accepted, one that
/// still delivers beside its successor, that of the group beside that of the other control.
std::int64_t SocketsOf(const CheckedSettings& settings)
{
    const bool isTcp = settings.protocol == Protocol::kTcp;
    const bool isMulticast = settings.protocol == Protocol::kMulticast;
    return isMulticast || (isTcp && (settings.role == Role::kListen || settings.reconnect)) ? 2 : 1;
}

int StatusOf(Outcome outcome)
{
    return outcome == Outcome::kComplete ? exit_status::kComplete : exit_status::kIncomplete;
}

}  // namespace

Shop::Shop(Surroundings surroundings, std::function<void(const std::string& line)> complain)
    : surroundings_(std::move(surroundings)), complain_(std::move(complain))
{
    surroundings_.ended = [this] { --unended_; };
}

void Shop::Open(std::vector<TillPlan> plans)
{
    const std::size_t wanted = plans.size();
    try {
        Make(std::move(plans));
        CheckDescriptors();
        for (Place& place : places_)
            TryFor(place, [&] { place.till->Load(); });
    } catch (const std::bad_alloc&) {
        const auto made =
            std::ranges::count_if(places_, [](const Place& place) { return place.till != nullptr; });
        throw UsageError("The memory serves " + std::to_string(made) + " of " + std::to_string(wanted) +
                         " tills");
    }
}

void Shop::Make(std::vector<TillPlan> plans)
{
    std::set<std::pair<Protocol, std::int32_t>> listening;
    places_.resize(plans.size());
    for (std::size_t i = 0; i < plans.size(); ++i) {
        TillPlan& plan = plans[i];
        Place& place = places_[i];
        place.name = plan.name;
        try {
            place.till = std::make_unique<Till>(surroundings_, std::move(plan));
            const CheckedSettings& settings = place.till->TheStation().Settings();
            if (Listens(settings) && !listening.emplace(settings.protocol, settings.port).second)
                throw UsageError("Another till listens on port " + std::to_string(settings.port));
        } catch (const UsageError& error) {
            LeaveOut(place, error.what());
        }
    }
}

template <class Step>
void Shop::TryFor(Place& place, const Step& step)
{
    if (!place.till)
        return;
    try {
        step();
    } catch (const UsageError& error) {
        LeaveOut(place, error.what());
    }
}

void Shop::LeaveOut(Place& place, const std::string& reason)
{
    complain_(IsSingle() ? reason : place.name + ": " + reason);
    if (place.till)
        place.unplayed = place.till->Report();
    place.unplayed.name = place.name;
    place.unplayed.outcome = Outcome::kFailed;
    place.unplayed.errors.push_back({0, "play_feed", reason, 1});
    place.till.reset();
}

void Shop::CheckDescriptors() const
{
    std::set<std::string> databases;
    std::int64_t sockets = 0;
    std::int64_t tills = 0;
    std::int64_t served = 0;
    const std::int64_t free = RaiseDescriptorLimit() - OpenDescriptors() - kSpareDescriptors;
    ForEachTill([&](const Till& till) {
        databases.insert(till.TheStation().DatabasePath());
        sockets += SocketsOf(till.TheStation().Settings());
        ++tills;
        if (sockets + static_cast<std::int64_t>(databases.size()) <= free)
            served = tills;
    });
    if (served < tills)
        throw UsageError("The system lets this process open so few files that they serve " +
                         std::to_string(served) + " of " + std::to_string(tills) +
                         " tills (ulimit -n, hard limit)");
}

void Shop::Play()
{
    unended_ = static_cast<std::size_t>(
        std::ranges::count_if(places_, [](const Place& place) { return place.till != nullptr; }));
    platform::EventLoop& loop = surroundings_.machine.loop;
    ForEachTill([&loop](Till& till) {
        till.Play();
        // The tills before tick already.
        loop.RunPass(platform::Waiting::kNo);
    });
    while (unended_ > 0)
        loop.RunPass(platform::Waiting::kYes);
}

void Shop::Interrupt(int signal)
{
    if (unended_ == 0)
        return;
    const bool isSecond = signal_ != 0;
    if (!isSecond)
        signal_ = signal;
    ForEachTill([&](Till& till) { isSecond ? till.Abandon() : till.Interrupt(); });
}

bool Shop::HasPlayed() const
{
    return std::ranges::any_of(places_, [](const Place& place) { return place.till != nullptr; });
}

Progress Shop::Now() const
{
    Progress now{.tills = static_cast<std::int64_t>(places_.size()), .total = 0};
    ForEachTill([&](const Till& till) {
        const Station& station = till.TheStation();
        const auto state = till.CurrentState();
        now.playing += state == Till::State::kPlaying || state == Till::State::kFinishing ? 1 : 0;
        now.waiting += state == Till::State::kWaiting ? 1 : 0;
        now.records += station.Counts().Records();
        now.reconnections += std::max<std::int64_t>(station.Counts().Connections() - 1, 0);
        const auto total = station.Engine().Total();
        now.total = now.total && total ? std::optional(*now.total + *total) : std::nullopt;
    });
    return now;
}

std::vector<Figures> Shop::Report() const
{
    std::vector<Figures> figures;
    figures.reserve(places_.size());
    for (const Place& place : places_)
        figures.push_back(place.till ? place.till->Report() : place.unplayed);
    return figures;
}

int Shop::ExitStatus() const
{
    int worst = signal_ != 0 ? exit_status::kInterrupted + signal_ : exit_status::kComplete;
    for (const Place& place : places_)
        worst =
            std::max(worst, place.till ? StatusOf(place.till->Report().outcome) : exit_status::kUnplayable);
    return worst;
}

template <class Action>
void Shop::ForEachTill(const Action& action) const
{
    for (const Place& place : places_) {
        if (place.till)
            action(*place.till);
    }
}

}  // namespace player
