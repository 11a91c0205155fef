#pragma once

#include <chrono>
#include <string_view>

#include "platform/posix/file_descriptor.h"

namespace platform::posix {

/// Standard error, which may be closed, full or slow, or have a reader that goes away: nothing here waits for it but
/// where that is asked for, and nothing fails. What it does not take is dropped.
class StandardError {
public:
    StandardError();

    [[nodiscard]] bool IsTerminal() const;

    /// Columns of the terminal; 80 where it does not tell.
    [[nodiscard]] std::size_t Columns() const;

    /// Writes what fits at once.
    void Write(std::string_view text);

    /// Waits so long for room, each time it is needed.
    void WriteWithin(std::string_view text, std::chrono::milliseconds patience);

private:
    /// A pipe or terminal opened anew, so that its other users go on blocking; closed where that is not needed.
    FileDescriptor own_;
    int descriptor_;
};

/// Opens /dev/null for each of the three standard descriptors that is closed. Otherwise the next file or socket would
/// get the number of standard error, and with it every message. Call it before anything is opened.
void OpenStandardDescriptors();

}  // namespace platform::posix
