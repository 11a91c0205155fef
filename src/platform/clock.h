#pragma once

#include "platform/date_time.h"

namespace platform {

class Clock {
public:
    virtual ~Clock() = default;

    /// The current local date and time.
    [[nodiscard]] virtual DateTime Now() const = 0;
};

}  // namespace platform
