#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "play/record_span.h"
#include "play/recorded_schedule.h"
#include "play/till_settings.h"

namespace player {

/// One of several parts of the tills of a shop, counted from 1.
struct Shard {
    std::int64_t number = 1;
    std::int64_t of = 1;
};

/// What the command line asks for.
struct Options {
    std::vector<std::string> settings;  // files; without any the built-in ones, or those beside the program
    std::vector<Override> overrides;    // as typed, not checked
    bool namesDatabase = false;         // among the overrides
    bool transferTime = false;

    RefRange range;
    std::optional<std::int64_t> loops = 1;  // nothing: until interrupted
    std::optional<RecordedSchedule::Rhythm> recorded;
    bool unpaced = false;
    std::chrono::milliseconds wait{10000};

    std::int64_t tills = 1;  // of each settings file
    std::int64_t portStep = 0;
    bool together = false;
    Shard shard;

    /// True also where the shard has one of the tills alone.
    [[nodiscard]] bool IsShop() const { return tills > 1 || settings.size() > 1; }

    std::optional<std::string> report;  // file, or "-"
    bool status = false;
    bool quiet = false;
    std::optional<std::string> locale;
};

/// Reads the command line. Gives an exit status where nothing is left to do: the help was shown, or wrong usage was told.
/// Failure: UsageError for values that make no sense.
[[nodiscard]] std::variant<Options, int> ParseOptions(int argumentCount, const char* const* arguments);

}  // namespace player
