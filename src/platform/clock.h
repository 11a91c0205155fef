#pragma once

#include "platform/date_time.h"

namespace platform {

/// The clock on the wall, from which alone the logic learns the time.
class Clock {
public:
    virtual ~Clock() = default;

    /// The current local date and time.
    [[nodiscard]] virtual DateTime Now() const = 0;
};

}  // namespace platform
