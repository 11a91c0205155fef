#include "fuzz_window/operator.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <string>

#include "fuzz_window/stage.h"

namespace {

/// A visible widget of a kind in a window, or the window itself where it has none.
template <class Kind>
QWidget& AnyOf(QWidget& window, Random& random)
{
    QList<QWidget*> found;
    for (QWidget* const widget : window.findChildren<Kind*>())
        if (widget->isVisible() && widget->window() == &window)
            found.push_back(widget);
    return found.empty() ? window : *random.Of(found);
}

QPoint AnyPointOf(const QWidget& widget, Random& random)
{
    return {random.Below(std::max(1, widget.width())), random.Below(std::max(1, widget.height()))};
}

QString AnyText(Random& random)
{
    const QString odd[] = {"",
                           "../",
                           "a|b\r\nc|d",
                           QString(3, QChar(0)),
                           QString(20'000, 'x'),
                           QString(QChar(0xD800)),
                           QString::fromUtf8("\u20AC\u65E5\u672C \U0001F600\u202E\u0301"),
                           QString::fromStdString(stage::kDatabase)};
    const QString numbers = "0 1 2.5 -5 1e3 inf 5015 32001 65536 99999999999999";
    const QString names =
        "127.0.0.1 10.1.2.3 ::1 239.1.2.3 ff02::1 localhost no.such.host.invalid no.sdd a.txt";
    return random.OneIn(3) ? random.Of(odd) : random.Of((random.OneIn(2) ? numbers : names).split(' '));
}

}  // namespace

void Operator::Act(Random& random)
{
    using Deed = void (Operator::*)(Random&);
    static constexpr Deed kDeeds[] = {&Operator::EnterWhatMakesSense,
                                      &Operator::ClickAnywhere,
                                      &Operator::ClickAnywhere,
                                      &Operator::PressButton,
                                      &Operator::PressButton,
                                      &Operator::PressButton,
                                      &Operator::TypeKey,
                                      &Operator::TypeKey,
                                      &Operator::PasteIntoBox,
                                      &Operator::TurnWheel,
                                      &Operator::ChangeWindow};
    (this->*random.Of(kDeeds))(random);
}

bool Operator::PutAway()
{
    Press(Qt::Key_Escape);  // also ends the dragging of a file, whose event loop hears of nothing else
    QWidget* const popup = QApplication::activePopupWidget();
    if (popup != nullptr)
        return popup->close();
    auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog != nullptr)
        dialog->reject();
    return dialog != nullptr;
}

QWidget& Operator::InFront() const
{
    if (QWidget* const popup = QApplication::activePopupWidget())
        return *popup;
    QWidget* const modal = QApplication::activeModalWidget();
    return modal != nullptr ? *modal : window_;
}

/// Without it hardly ever anything would be played.
void Operator::EnterWhatMakesSense(Random& random)
{
    if (auto* const fileName = InFront().findChild<QLineEdit*>("fileNameEdit")) {
        fileName->setText(QString::fromStdString(stage::kDatabase));
        return Press(Qt::Key_Return);
    }
    window_.txtIPAddress.SetText("127.0.0.1");
    window_.txtPortNumber.SetText(std::to_string(stage::kPort));
    window_.txtTimerInterval.SetText("1");
    window_.cboProtocol.setCurrentIndex(random.OneIn(2) ? 0 : random.Below(3));
    window_.cboConnect.setCurrentIndex(random.Below(2));
    window_.chkReconnect.SetValue(random.Below(2));
    Click(window_.cmdPlay, {5, 5}, {5, 5});
}

/// Some clicks drag, and some go to the window though something is in front of it.
void Operator::ClickAnywhere(Random& random)
{
    constexpr Qt::MouseButton kButtons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                            Qt::MiddleButton};
    const QWidget& widget = AnyOf<QWidget>(random.OneIn(10) ? window_ : InFront(), random);
    const QPoint pressed = AnyPointOf(widget, random);
    Click(widget, pressed, random.OneIn(4) ? AnyPointOf(widget, random) : pressed, random.Of(kButtons));
}

void Operator::PressButton(Random& random)
{
    const QWidget& button = AnyOf<QAbstractButton>(InFront(), random);
    const QPoint point = AnyPointOf(button, random);
    Click(button, point, point);
}

void Operator::TypeKey(Random& random)
{
    static constexpr Qt::KeyboardModifier kModifiers[] = {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier,
                                                          Qt::ShiftModifier, Qt::AltModifier};
    const int key = random.OneIn(2) ? Qt::Key_Space + random.Below(Qt::Key_AsciiTilde - Qt::Key_Space)
                                    : Qt::Key_Escape + random.Below(Qt::Key_Menu + 1 - Qt::Key_Escape);
    Press(static_cast<Qt::Key>(key), random.Of(kModifiers));
}

void Operator::PasteIntoBox(Random& random)
{
    const QWidget& box = AnyOf<QLineEdit>(InFront(), random);
    const QPoint point = AnyPointOf(box, random);
    Click(box, point, point);
    QApplication::clipboard()->setText(AnyText(random));
    if (random.OneIn(2))
        Press(Qt::Key_A, Qt::ControlModifier);
    Press(Qt::Key_V, Qt::ControlModifier);
}

void Operator::TurnWheel(Random& random)
{
    QWidget& widget = AnyOf<QWidget>(InFront(), random);
    const QPoint point = AnyPointOf(widget, random);
    const QPoint turn(0, (random.Below(9) - 4) * QWheelEvent::DefaultDeltasPerStep);
    QApplication::postEvent(&widget, new QWheelEvent(point, widget.mapToGlobal(point), {}, turn, Qt::NoButton,
                                                     Qt::NoModifier, Qt::NoScrollPhase, false));
}

void Operator::ChangeWindow(Random& random)
{
    constexpr void (QWidget::*kChanges[])() = {&QWidget::showMinimized, &QWidget::showMaximized,
                                               &QWidget::showNormal, &QWidget::hide, &QWidget::showNormal};
    (window_.*random.Of(kChanges))();
}

void Operator::Click(const QWidget& widget, QPoint pressed, QPoint released, Qt::MouseButton button)
{
    QWindow* const window = widget.window()->windowHandle();
    if (window == nullptr)
        return;
    milliseconds_ += pressed.x() % 2 * QApplication::doubleClickInterval();
    const auto act = [&](QEvent::Type type, QPoint point, Qt::MouseButton changed, Qt::MouseButtons held) {
        const QPoint inWindow = widget.mapTo(widget.window(), point);
        qt_handleMouseEvent(window, inWindow, window->mapToGlobal(inWindow), held, changed, type,
                            Qt::NoModifier, ++milliseconds_);
    };
    act(QEvent::MouseMove, pressed, Qt::NoButton, Qt::NoButton);
    act(QEvent::MouseButtonPress, pressed, button, button);
    act(QEvent::MouseMove, released, Qt::NoButton, button);
    act(QEvent::MouseButtonRelease, released, button, Qt::NoButton);
}

void Operator::Press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QWindow* const window = InFront().windowHandle();
    if (window == nullptr)
        return;
    const QString text = key < Qt::Key_Escape ? QString(QChar(key)) : QString();
    qt_handleKeyEvent(window, QEvent::KeyPress, key, modifiers, text);
    qt_handleKeyEvent(window, QEvent::KeyRelease, key, modifiers, text);
}
