#pragma once

#include <cstddef>
#include <string>

#include "trellivan.h"

/// What must hold after anything. Each throws std::runtime_error, with what is wrong, where it does not.
namespace checks {

enum class Feed { kClient, kServer, kDatagrams, kGroup };

/// Plays the database of the stage from its first record to a receiver, which gets every byte and no more. For a
/// group the program has just been started.
void PlaysWholeFeed(platform::qt::MainWindow& window, Feed feed);

/// Each record of the log is whole.
void LogIsWellFormed(const std::string& content);

/// What a program that is at rest uses, beyond the lines of its status list.
struct Usage {
    std::size_t descriptors;
    std::size_t bytes;
};
[[nodiscard]] Usage AtRest(platform::qt::MainWindow& window);

void NothingWasKept(const Usage& before, platform::qt::MainWindow& window);

}  // namespace checks
