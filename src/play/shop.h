#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "play/figures.h"
#include "play/progress.h"
#include "play/till.h"

namespace player {

/// All tills that this process plays, on one event loop.
class Shop {
public:
    /// `complain` prints one line about a till that cannot be played. The shop itself listens for what ends.
    Shop(Surroundings surroundings, std::function<void(const std::string& line)> complain);
    Shop(const Shop&) = delete;
    Shop& operator=(const Shop&) = delete;

    /// Makes the tills and opens what they play; nothing is sent yet. A till that cannot be played is complained about
    /// and left out. Failure: UsageError where the system does not permit so many tills.
    void Open(std::vector<TillPlan> plans);

    /// Plays until all tills have ended.
    void Play();

    /// By a signal: the first lets the tills end in order, the second ends them at once. What has ended stays as it is.
    void Interrupt(int signal);

    [[nodiscard]] bool IsSingle() const { return places_.size() == 1; }

    /// True when at least one till could be played.
    [[nodiscard]] bool HasPlayed() const;

    [[nodiscard]] Progress Now() const;
    [[nodiscard]] std::vector<Figures> Report() const;
    [[nodiscard]] int ExitStatus() const;

private:
    /// A till, or what is reported in place of one that cannot be played.
    struct Place {
        std::string name;
        std::unique_ptr<Till> till;
        Figures unplayed;
    };

    void Make(std::vector<TillPlan> plans);
    template <class Step>
    void TryFor(Place& place, const Step& step);
    void LeaveOut(Place& place, const std::string& reason);
    void CheckDescriptors() const;
    template <class Action>
    void ForEachTill(const Action& action) const;

    Surroundings surroundings_;
    std::function<void(const std::string&)> complain_;
    std::vector<Place> places_;
    std::size_t unended_ = 0;
    int signal_ = 0;
};

}  // namespace player
