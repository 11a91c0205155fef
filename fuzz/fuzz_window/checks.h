#pragma once

#include <cstddef>
#include <string>

#include "platform/window/main_window.h"

/// What must hold after anything. Where it does not, the process aborts and says what is wrong.
namespace checks {

enum class Feed { kClient, kServer, kDatagrams, kGroup };

/// Opens the stage's database and plays it to a receiver, which gets every byte and no more. For a group the
/// program has just been started.
void PlaysWholeFeed(platform::window::MainWindow& window, Feed feed);

/// Each record of the log is whole.
void LogIsWellFormed(const std::string& content);

/// What the process uses when the program rests, beyond the lines of the status list.
struct Usage {
    std::size_t descriptors;
    std::size_t bytes;
};
[[nodiscard]] Usage UsageAtRest(platform::window::MainWindow& window);

void NothingPiledUp(const Usage& before, const Usage& now);

}  // namespace checks
