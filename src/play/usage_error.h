#pragma once

#include <stdexcept>

namespace player {

/// A command or settings that cannot be played. The message is one line for whoever typed it.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace player
