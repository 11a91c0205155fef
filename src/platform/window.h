#pragma once

#include <string>

namespace platform {

/// The program's one window.
class Window {
public:
    virtual ~Window() = default;
    virtual void SetCaption(const std::string& caption) = 0;
};

}  // namespace platform
