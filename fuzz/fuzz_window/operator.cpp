#include "fuzz_window/operator.h"

#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <string>

#include "fuzz_window/stage.h"

namespace {

/// A visible widget of a kind in the window in front, or the window itself where it has none.
template <class Kind>
QWidget& AnyOf(QWidget& front, Random& random)
{
    QList<QWidget*> found;
    for (QWidget* const widget : front.findChildren<Kind*>())
        if (widget->isVisible() && widget->window() == &front)
            found.push_back(widget);
    return found.empty() ? front : *random.Of(found);
}

QPoint AnyPointOf(const QWidget& widget, Random& random)
{
    return {random.Below(std::max(1, widget.width())), random.Below(std::max(1, widget.height()))};
}

QString AnyText(Random& random)
{
    static const QString kTexts[] = {"127.0.0.1",
                                     "127.0.0.1",
                                     "::1",
                                     "239.1.2.3",
                                     "ff02::1",
                                     "localhost",
                                     "no.such.host.invalid",
                                     "10.1.2.3",
                                     "5015",
                                     "5015",
                                     "1",
                                     "1",
                                     "2.5",
                                     "0",
                                     "-5",
                                     "32001",
                                     "1e3",
                                     "99999999999999",
                                     "65536",
                                     "inf",
                                     "",
                                     " ",
                                     "a|b\r\nc|d",
                                     QString(3, QChar(0)),
                                     QString::fromUtf8("\u20AC\u65E5\u672C \U0001F600\u202E\u0301"),
                                     QString(QChar(0xD800)),
                                     QString(100'000, 'x'),
                                     QString::fromStdString(stage::kDatabase),
                                     "receipts.mdb",
                                     "nowhere.sdd",
                                     "../",
                                     "a.txt"};
    return random.Of(kTexts);
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
                                      &Operator::TypeKeys,
                                      &Operator::TypeKeys,
                                      &Operator::PasteIntoBox,
                                      &Operator::TurnWheel,
                                      &Operator::ChangeWindow};
    (this->*random.Of(kDeeds))(random);
}

bool Operator::PutAway()
{
    if (QWidget* const popup = QApplication::activePopupWidget())
        return popup->close(), true;
    if (QWidget* const modal = QApplication::activeModalWidget())
        return qobject_cast<QDialog*>(modal)->done(QDialog::Rejected), true;
    return false;
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
    window_.txtIPAddress.SetText("127.0.0.1");
    window_.txtPortNumber.SetText(std::to_string(stage::kPort));
    window_.txtTimerInterval.SetText("1");
    window_.cboProtocol.setCurrentIndex(random.OneIn(2) ? 0 : random.Below(3));
    window_.cboConnect.setCurrentIndex(random.Below(2));
    window_.chkReconnect.SetValue(random.Below(2));
    Click(window_.cmdPlay, {5, 5}, Qt::LeftButton);
}

void Operator::ClickAnywhere(Random& random)
{
    const QWidget& widget = AnyOf<QWidget>(random.OneIn(10) ? window_ : InFront(), random);
    const Qt::MouseButton button =
        random.OneIn(8) ? random.Of({Qt::RightButton, Qt::MiddleButton}) : Qt::LeftButton;
    const QPoint drag = random.OneIn(5) ? QPoint(random.Below(200) - 100, random.Below(200) - 100) : QPoint();
    Click(widget, AnyPointOf(widget, random), button, drag);
}

void Operator::PressButton(Random& random)
{
    const QWidget& button = AnyOf<QAbstractButton>(InFront(), random);
    Click(button, AnyPointOf(button, random), Qt::LeftButton);
}

void Operator::TypeKeys(Random& random)
{
    static constexpr Qt::Key kKeys[] = {
        Qt::Key_Tab,      Qt::Key_Backtab,   Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space, Qt::Key_Up,
        Qt::Key_Down,     Qt::Key_Left,      Qt::Key_Right,  Qt::Key_Home,   Qt::Key_End,   Qt::Key_PageUp,
        Qt::Key_PageDown, Qt::Key_F4,        Qt::Key_A,      Qt::Key_C,      Qt::Key_V,     Qt::Key_X,
        Qt::Key_Z,        Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_1,      Qt::Key_9,     Qt::Key_Period,
        Qt::Key_Menu,     Qt::Key_F2};
    for (int keys = 1 + random.Below(4); keys > 0; --keys) {
        const Qt::Key key = random.Of(kKeys);
        const QString text = key < Qt::Key_Escape ? QString(QChar(key)) : QString();
        Press(key,
              random.Of(
                  {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier, Qt::AltModifier}),
              text);
    }
}

void Operator::PasteIntoBox(Random& random)
{
    const QWidget& box = AnyOf<QLineEdit>(InFront(), random);
    Click(box, AnyPointOf(box, random), Qt::LeftButton);
    QApplication::clipboard()->setText(AnyText(random));
    if (random.OneIn(2))
        Press(Qt::Key_A, Qt::ControlModifier);
    Press(Qt::Key_V, Qt::ControlModifier);
    if (random.OneIn(4))
        Press(Qt::Key_Return, Qt::NoModifier);
}

void Operator::TurnWheel(Random& random)
{
    QWidget& widget = AnyOf<QWidget>(InFront(), random);
    const QPoint position = AnyPointOf(widget, random);
    const QPoint turn(0, (random.Below(9) - 4) * QWheelEvent::DefaultDeltasPerStep);
    QApplication::postEvent(&widget, new QWheelEvent(position, widget.mapToGlobal(position), {}, turn,
                                                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false));
}

void Operator::ChangeWindow(Random& random)
{
    switch (random.Below(4)) {
        case 0:
            return window_.showMinimized();
        case 1:
            return window_.windowHandle()->resize(random.Below(2000), random.Below(2000));
        case 2:
            return window_.move(random.Below(500), random.Below(500));
        default:
            return window_.showNormal();
    }
}

void Operator::Click(const QWidget& widget, QPoint position, Qt::MouseButton button, QPoint releaseOffset)
{
    QWindow* const window = widget.window()->windowHandle();
    if (window == nullptr)
        return;
    milliseconds_ += 1 + static_cast<int>(position.x()) % 2 * QApplication::doubleClickInterval();
    const auto act = [&](QEvent::Type type, QPoint at, Qt::MouseButton changed, Qt::MouseButtons held) {
        const QPoint inWindow = widget.mapTo(widget.window(), at);
        qt_handleMouseEvent(window, inWindow, window->mapToGlobal(inWindow), held, changed, type,
                            Qt::NoModifier, ++milliseconds_);
    };
    act(QEvent::MouseMove, position, Qt::NoButton, Qt::NoButton);
    act(QEvent::MouseButtonPress, position, button, button);
    if (!releaseOffset.isNull())
        act(QEvent::MouseMove, position + releaseOffset, Qt::NoButton, button);
    act(QEvent::MouseButtonRelease, position + releaseOffset, button, Qt::NoButton);
}

void Operator::Press(int key, Qt::KeyboardModifiers modifiers, const QString& text) const
{
    if (QWindow* const window = InFront().windowHandle()) {
        qt_handleKeyEvent(window, QEvent::KeyPress, key, modifiers, text);
        qt_handleKeyEvent(window, QEvent::KeyRelease, key, modifiers, text);
    }
}
