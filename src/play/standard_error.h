#pragma once

#include <chrono>
#include <string_view>

#include "platform/posix/file_descriptor.h"

namespace player {

/// Standard error, which may be closed, full or slow, or have a reader that goes away: nothing here waits for it but
/// where that is asked for, and nothing fails. What it does not take is dropped.
class StandardError {
public:
    StandardError();

    [[nodiscard]] bool IsTerminal() const;

    /// Writes what fits at once.
    void Write(std::string_view text);

    /// Waits so long for room, each time it is needed.
    void WriteWithin(std::string_view text, std::chrono::milliseconds patience);

private:
    /// A pipe or terminal opened anew, so that its other users go on blocking; closed where that is not needed.
    platform::FileDescriptor own_;
    int descriptor_;
};

}  // namespace player
