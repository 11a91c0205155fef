#include "platform/window/controls.h"

#include <limits>

#include "platform/failure.h"
#include "platform/window/text.h"

namespace platform::window {

TextBox::TextBox(QWidget* parent) : QLineEdit(parent)
{
    setMaxLength(std::numeric_limits<int>::max());
}

std::string TextBox::Text() const
{
    return FromQt(text());
}

void TextBox::SetText(const std::string& text)
{
    setText(ToQt(text));
    setCursorPosition(0);
}

DisplayBox::DisplayBox(QWidget* parent) : QLineEdit(parent)
{
    setReadOnly(true);
}

void DisplayBox::SetText(const std::string& text)
{
    text_ = text;
    pacer_.Request();
}

void DisplayBox::ShowText()
{
    constexpr std::size_t kMostCharacters = 4096;  // the length of the longest path
    const QString shown = VisibleText(text_, kMostCharacters);
    if (shown == text())
        return;
    setText(shown);
    setCursorPosition(0);
}

void DropDownList::AddItem(const std::string& item)
{
    const int selected = currentIndex();
    addItem(ToQt(item));
    setCurrentIndex(selected);
}

std::string DropDownList::Text() const
{
    return FromQt(currentText());
}

void DropDownList::SetText(const std::string& text)
{
    const int index = findText(ToQt(text), Qt::MatchFixedString);
    if (index < 0)
        throw Failure(failure::kTextNotInList, "The list has no item \"" + text + "\"");
    setCurrentIndex(index);
}

int CheckBox::Value() const
{
    switch (checkState()) {
        case Qt::Unchecked:
            return kUnticked;
        case Qt::Checked:
            return kTicked;
        default:
            return kNeither;
    }
}

void CheckBox::SetValue(int value)
{
    if (value < kUnticked || value > kNeither)
        throw Failure(failure::kInvalidPropertyValue,
                      "A check box's value cannot be " + std::to_string(value));
    setCheckState(value == kNeither ? Qt::PartiallyChecked : value == kTicked ? Qt::Checked : Qt::Unchecked);
    setTristate(value == kNeither);
}

void CheckBox::nextCheckState()
{
    SetValue(checkState() == Qt::Unchecked ? kTicked : kUnticked);
}

CommandButton::CommandButton(QWidget* parent, EventGate& gate) : QPushButton(parent)
{
    setAutoDefault(true);  // Enter presses the button that has the focus
    connect(this, &QPushButton::clicked, [this, &gate] {
        gate.Enter([this] {
            if (OnClick)
                OnClick();
        });
    });
}

}  // namespace platform::window
