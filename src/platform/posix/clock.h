#pragma once

#include <chrono>

#include "platform/date_time.h"

namespace platform::posix {

/// The system's clock in the user's time zone. The zone is asked once a second: it takes several calls of the
/// system to look whether it was changed.
class Clock final : public platform::Clock {
public:
    [[nodiscard]] DateTime Now() const override;

private:
    mutable std::chrono::sys_seconds second_ = std::chrono::sys_seconds::min();
    mutable DateTime localSecond_;  // what second_ is in the user's time zone
};

}  // namespace platform::posix
