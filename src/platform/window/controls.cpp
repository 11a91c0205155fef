#include "platform/window/controls.h"

#include <QPainter>
#include <QStyleOptionButton>
#include <QValidator>
#include <QWheelEvent>

#include "platform/event_gate.h"
#include "platform/failure.h"
#include "platform/window/text.h"

namespace platform::window {

namespace {

/// Every way in which text comes into a box ends here.
class UnseenRemover final : public QValidator {
public:
    using QValidator::QValidator;

    State validate(QString& text, int& cursor) const override
    {
        cursor = static_cast<int>(WithoutUnseen(text.left(cursor)).size());
        text = WithoutUnseen(text);
        return Acceptable;
    }
};

}  // namespace

TextBox::TextBox(QWidget* parent) : QLineEdit(parent)
{
    setMaxLength(kMostCharacters);
    setValidator(new UnseenRemover(this));
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

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);  // not by the wheel
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

void DropDownList::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
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

void CheckBox::paintEvent(QPaintEvent* event)
{
    QCheckBox::paintEvent(event);
    // Styles draw the box's frame a little darker than the window. Where the window is dark, that does not show.
    const QPalette& colors = palette();
    if (colors.color(QPalette::Window).lightness() > colors.color(QPalette::WindowText).lightness())
        return;
    QStyleOptionButton option;
    initStyleOption(&option);
    const QRect box = style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, this);
    QPainter painter(this);
    QColor frame = colors.color(hasFocus() ? QPalette::Highlight : QPalette::WindowText);
    frame.setAlphaF(hasFocus() ? 1 : 0.6F);
    painter.setPen(frame);
    painter.drawRect(box.adjusted(0, 0, -1, -1));
}

CommandButton::CommandButton(QWidget* parent, EventGate& gate) : QPushButton(parent)
{
    setAutoDefault(true);  // Enter presses the button that has the focus
    connect(this, &QPushButton::clicked, [this, &gate] { gate.Enter([this] { Raise(OnClick); }); });
}

}  // namespace platform::window
