#include "play/controls.h"

#include <algorithm>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace player {

using platform::Failure;

void DropDownList::SetText(const std::string& text)
{
    const auto found =
        std::ranges::find_if(items_, [&](const std::string& item) { return platform::SameName(item, text); });
    if (found == items_.end())
        throw Failure(platform::failure::kTextNotInList, "The list has no item \"" + text + "\"");
    text_ = *found;
}

void CheckBox::SetValue(int value)
{
    if (value < kUnticked || value > kNeither)
        throw Failure(platform::failure::kInvalidPropertyValue,
                      "A check box's value cannot be " + std::to_string(value));
    value_ = value;
}

void OpenFileDialog::ShowOpen()
{
    throw Failure(platform::failure::kDialogCancelled, "Cancel was selected");
}

}  // namespace player
