#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "play/error_list.h"
#include "play/lateness.h"

namespace player {

/// How the feed of a till ended, from the best to the worst.
enum class Outcome {
    kComplete,     ///< every record is in the receiver's hands, as far as the protocol tells
    kLost,         ///< a connection was lost, and records with it, or it did not come back
    kFailed,       ///< records were refused, the receiver never came, or the feed cannot be played
    kInterrupted,  ///< by a signal
};

/// "complete", "lost", "failed", "interrupted".
[[nodiscard]] std::string Name(Outcome outcome);

/// What is reported of one till, or of several together.
struct Figures {
    std::string name{};
    std::string target{};
    Outcome outcome = Outcome::kComplete;
    std::int64_t records = 0;
    std::int64_t bytes = 0;
    double seconds = 0;  ///< from the receiver's coming to the end
    std::int64_t recordsRefused = 0;
    std::int64_t recordsInDoubt = 0;
    std::int64_t connections = 0;
    Lateness lateness{};
    std::int64_t late = 0;
    std::vector<CountedError> errors{};
};

/// Sums, the longest time, the worst outcome, and the lateness over all.
[[nodiscard]] Figures Together(const std::vector<Figures>& tills);

}  // namespace player
