#pragma once

#include "platform/clock.h"

namespace platform::qt {

/// The system's clock in the user's time zone.
class Clock final : public platform::Clock {
public:
    [[nodiscard]] DateTime Now() const override;
};

}  // namespace platform::qt
