#include "play/figures.h"

#include <algorithm>

namespace player {

std::string Name(Outcome outcome)
{
    switch (outcome) {
        case Outcome::kComplete:
            return "complete";
        case Outcome::kLost:
            return "lost";
        case Outcome::kFailed:
            return "failed";
        default:
            return "interrupted";
    }
}

Figures Together(const std::vector<Figures>& tills)
{
    Figures all;
    ErrorList errors;
    for (const Figures& till : tills) {
        all.outcome = std::max(all.outcome, till.outcome);
        all.records += till.records;
        all.bytes += till.bytes;
        all.seconds = std::max(all.seconds, till.seconds);
        all.recordsRefused += till.recordsRefused;
        all.recordsInDoubt += till.recordsInDoubt;
        all.connections += till.connections;
        all.lateness.Add(till.lateness);
        all.late += till.late;
        for (const CountedError& error : till.errors)
            errors.Add(error);
    }
    all.errors = errors.Errors();
    return all;
}

}  // namespace player
