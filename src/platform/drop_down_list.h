#pragma once

#include <string>

namespace platform {

/// A list that shows one selected item; the operator picks an item and cannot type. It raises no events.
class DropDownList {
public:
    virtual ~DropDownList() = default;

    /// Appends an item. The selection stays.
    virtual void AddItem(const std::string& item) = 0;

    /// The selected item as it was added; empty while nothing is selected.
    [[nodiscard]] virtual std::string Text() const = 0;

    /// Selects the item equal to the text without regard to letter case. Failure: kTextNotInList where no
    /// item is; the selection stays.
    virtual void SetText(const std::string& text) = 0;
};

}  // namespace platform
