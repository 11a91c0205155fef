#include <gtest/gtest.h>

#include <QTest>

#include "platform/window/main_window.h"

namespace platform::window {
namespace {

/// Whoever works by keyboard must see where the next key goes, in empty lists and boxes as well.
TEST(KeyboardFocus, ShowsOnEveryInput)
{
    EventGate gate;
    MainWindow window(gate);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.setAttribute(Qt::WA_KeyboardFocusChange);  // as after a first Tab
    int inputs = 0;
    for (QWidget* const input : window.findChildren<QWidget*>()) {
        const bool takesFocus =
            input->focusPolicy() == Qt::StrongFocus || input->focusPolicy() == Qt::WheelFocus;
        if (!takesFocus || input->window() != &window)
            continue;
        input->clearFocus();
        const QImage without = input->grab().toImage();
        input->setFocus(Qt::TabFocusReason);
        EXPECT_TRUE(input->grab().toImage() != without) << input->objectName().toStdString();
        ++inputs;
    }
    EXPECT_EQ(inputs, 17);
}

}  // namespace
}  // namespace platform::window
