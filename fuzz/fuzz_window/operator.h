#pragma once

#include <QObject>
#include <QPoint>

#include "fuzz_window/random.h"
#include "platform/qt/main_window.h"

/// Hands at the mouse and the keyboard, without a head. What they do comes through the window system to whatever
/// is in front: the window, a dialog, a list that is open, a menu.
class Operator {
public:
    explicit Operator(platform::qt::MainWindow& window) : window_(window) {}

    void Act(Random& random);

    /// Closes one dialog, open list or menu; false when there is none.
    [[nodiscard]] static bool PutAway();

private:
    [[nodiscard]] QWidget& InFront() const;
    void EnterWhatMakesSense(Random& random);
    void ClickAnywhere(Random& random);
    void PressButton(Random& random);
    void TypeKeys(Random& random);
    void PasteIntoBox(Random& random);
    void TurnWheel(Random& random);
    void ChangeWindow(Random& random);

    void Click(const QWidget& widget, QPoint position, Qt::MouseButton button, QPoint releaseOffset = {});
    void Press(int key, Qt::KeyboardModifiers modifiers, const QString& text = {}) const;

    platform::qt::MainWindow& window_;
    int milliseconds_ = 0;  ///< what the clicks say of the time
};
