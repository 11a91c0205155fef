#pragma once

#include <QPoint>

#include "fuzz_window/random.h"
#include "platform/window/main_window.h"

/// Hands at the mouse and the keyboard, without a head. What they do comes through the window system to whatever
/// is in front: the window, the file dialog, a list that is open, a menu.
class Operator {
public:
    explicit Operator(platform::window::MainWindow& window) : window_(window) {}

    void Act(Random& random);

    /// Closes what is in front of the window; false when nothing is.
    [[nodiscard]] bool PutAway();

private:
    [[nodiscard]] QWidget& InFront() const;
    void EnterWhatMakesSense(Random& random);
    void ClickAnywhere(Random& random);
    void PressButton(Random& random);
    void TypeKey(Random& random);
    void PasteIntoBox(Random& random);
    void TurnWheel(Random& random);
    void ChangeWindow(Random& random);

    void Click(const QWidget& widget, QPoint pressed, QPoint released,
               Qt::MouseButton button = Qt::LeftButton);
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    platform::window::MainWindow& window_;
    int milliseconds_ = 0;  ///< what the clicks say of the time
};
