#pragma once

#include <string>

namespace platform {

/// A box with one line of text, in UTF-8. It raises no events: whoever needs the text reads it.
class TextBox {
public:
    virtual ~TextBox() = default;
    [[nodiscard]] virtual std::string Text() const = 0;
    virtual void SetText(const std::string& text) = 0;
};

}  // namespace platform
