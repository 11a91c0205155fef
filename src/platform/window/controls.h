#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <chrono>
#include <string>

#include "platform/controls.h"
#include "platform/event_gate.h"
#include "platform/window/frame_pacer.h"

/// The window's controls: widgets that do what the logic says and tell it what the operator did.
namespace platform::window {

/// A box in which the operator types one line. What is typed, pasted or set loses its control and formatting characters,
/// which nobody would see, and all beyond kMostCharacters: a value of the settings file holds no more. A character
/// outside Unicode's first plane counts as two.
class TextBox final : public QLineEdit, public platform::TextBox {
public:
    static constexpr int kMostCharacters = 255;

    explicit TextBox(QWidget* parent);
    [[nodiscard]] std::string Text() const override;
    void SetText(const std::string& text) override;
};

/// A box in which only the program writes; the operator selects and copies. It may be written at every tick:
/// a text is laid out at most once a display frame, and its beginning only.
class DisplayBox final : public QLineEdit, public platform::TextBox {
public:
    explicit DisplayBox(QWidget* parent);
    [[nodiscard]] std::string Text() const override { return text_; }
    void SetText(const std::string& text) override;

private:
    void ShowText();

    /// Not in step with the lists, so that text and lines are mostly painted in the pauses of different ticks.
    static constexpr std::chrono::milliseconds kPause{24};

    std::string text_;
    FramePacer pacer_{[this] { ShowText(); }, kPause};
};

class DropDownList final : public QComboBox, public platform::DropDownList {
public:
    explicit DropDownList(QWidget* parent);
    void AddItem(const std::string& item) override;
    [[nodiscard]] std::string Text() const override;
    void SetText(const std::string& text) override;

protected:
    /// The wheel changes the item only of the list that has the focus. Over another one it would do so unnoticed.
    void wheelEvent(QWheelEvent* event) override;
};

class CheckBox final : public QCheckBox, public platform::CheckBox {
public:
    using QCheckBox::QCheckBox;
    [[nodiscard]] int Value() const override;
    void SetValue(int value) override;

protected:
    /// The operator chooses between unticked and ticked only.
    void nextCheckState() override;
    void paintEvent(QPaintEvent* event) override;
};

class CommandButton final : public QPushButton, public platform::CommandButton {
public:
    CommandButton(QWidget* parent, EventGate& gate);
};

}  // namespace platform::window
