#pragma once

#include <functional>

namespace platform {

/// A button. OnClick comes from the event loop through the gate; it is set once and lives as long as the
/// window.
class CommandButton {
public:
    virtual ~CommandButton() = default;
    std::function<void()> OnClick;
};

}  // namespace platform
