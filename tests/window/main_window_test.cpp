#include "platform/window/main_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QLabel>
#include <QStyleOptionButton>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>

#include "platform/window/caption_font.h"

namespace platform::window {
namespace {

using namespace std::string_literals;

class MainWindowTest : public testing::Test {
protected:
    EventGate gate;
    MainWindow window{gate};
};

TEST_F(MainWindowTest, KeepsItsSizeItsIconsAndItsControlsTheirPlaces)
{
    const std::pair<const char*, QRect> cases[] = {
        {"Frame1", {8, 8, 361, 121}},      {"txtIPAddress", {96, 24, 137, 19}},
        {"cmdApply", {296, 96, 65, 25}},   {"DataViewList", {376, 8, 313, 173}},
        {"Label1", {64, 168, 81, 17}},     {"chkTransferTime", {272, 160, 97, 17}},
        {"lstStatus", {64, 192, 305, 43}}, {"txtFilePath", {64, 240, 529, 19}},
    };
    window.show();
    window.resize(2000, 2000);
    EXPECT_EQ(window.size(), QSize(725, 263));
    EXPECT_EQ(window.windowIcon().availableSizes(), (QList<QSize>{{32, 32}, {16, 16}}));
    for (const auto& [name, place] : cases) {
        const auto* const widget = window.findChild<QWidget*>(name);
        ASSERT_NE(widget, nullptr) << name;
        EXPECT_EQ(QRect(widget->mapTo(&window, QPoint()), widget->size()), place) << name;
    }
}

TEST(MainWindow, ClipsNoCaptionInAnyFont)
{
    const QFont usual = QApplication::font();
    for (const char* family :
         {"Sans Serif", "DejaVu Sans", "Nimbus Sans", "Noto Sans Mono", "DejaVu Serif"}) {
        QApplication::setFont(QFont(family, 16));
        EventGate gate;
        const MainWindow window(gate);
        int captions = 0;
        for (const QWidget* const widget : window.findChildren<QWidget*>()) {
            if (qobject_cast<const QLabel*>(widget) == nullptr &&
                qobject_cast<const QAbstractButton*>(widget) == nullptr)
                continue;
            const Caption caption = CaptionOf(*widget);
            const QRect needed = QFontMetrics(widget->font(), widget).boundingRect(caption.text);
            captions += caption.text.isEmpty() ? 0 : 1;
            EXPECT_LE(needed.width(), caption.width) << family << ": " << caption.text.toStdString();
            EXPECT_LE(needed.height(), widget->height()) << family << ": " << caption.text.toStdString();
        }
        EXPECT_EQ(captions, 16) << family;
    }
    QApplication::setFont(usual);
}

/// Whoever works by keyboard must see where the next key goes, in empty lists and boxes as well.
TEST_F(MainWindowTest, MovesTheFocusThroughNamedInputsInOrderAndShowsIt)
{
    const QString order =
        "cmdOpenDialogue cmdPlay cmdPause cmdClear txtIPAddress txtPortNumber cboProtocol cboConnect "
        "chkReconnect cmdApply txtTimerInterval DataViewList txtFilePath txtDBTime lstStatus chkTransferTime "
        "txtHeartbeat cmdOpenDialogue";
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    window.setAttribute(Qt::WA_KeyboardFocusChange);  // as after a first Tab
    for (const QString& name : order.split(' ')) {
        QWidget* const input = window.focusWidget();
        ASSERT_NE(input, nullptr) << name.toStdString();
        EXPECT_EQ(input->objectName(), name);
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(input)->text(QAccessible::Name).isEmpty())
            << name.toStdString();
        const QImage with = input->grab().toImage();
        QTest::keyClick(input, Qt::Key_Tab);
        EXPECT_TRUE(input->grab().toImage() != with) << name.toStdString();
    }
}

TEST_F(MainWindowTest, TakesOneLineWithoutUnseenCharactersHoweverItComes)
{
    const std::string longest(255, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"10.0.0.1\r\n", "10.0.0.1"},
        {"\t10.0.0.1\u200B\u2028", "10.0.0.1"},
        {" a & b ", " a & b "},
        {"caf\u00E9\u00A0\U0001F600", "caf\u00E9\u00A0\U0001F600"},
        {std::string(1'000'000, 'x'), longest},
        {longest.substr(1) + "\U0001F600", longest.substr(1)},
        {"\U000E0001\x7F\x01", ""},
    };
    TextBox& box = window.txtIPAddress;
    for (const auto& [given, held] : cases) {
        box.SetText("gone");
        box.SetText(given);
        EXPECT_EQ(box.Text(), held) << "set";
        QGuiApplication::clipboard()->setText(QString::fromStdString(given));
        box.selectAll();
        box.paste();
        EXPECT_EQ(box.Text(), held) << "pasted";
    }
    box.SetText("10..1");
    box.setCursorPosition(3);
    QGuiApplication::clipboard()->setText("\n0.0\n");
    box.paste();
    QTest::keyClicks(&box, ".");
    EXPECT_EQ(box.Text(), "10.0.0..1") << "the cursor stays behind what was pasted";
}

TEST_F(MainWindowTest, ShowsWhatTheProgramWritesAsItIsForCopyingOnly)
{
    const std::string odd = "a & b\r\n\t\x01 \uFEFF\U0001F600"s + std::string(100'000, 'x');
    window.txtFilePath.SetText(odd);
    EXPECT_EQ(window.txtFilePath.Text(), odd);
    window.show();
    window.txtDBTime.SetText("3:07:08 PM");
    window.txtDBTime.SetText("3:07:09 PM");
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.txtDBTime.text() == "3:07:09 PM"; }));
    for (DisplayBox* const box : {&window.txtDBTime, &window.txtHeartbeat, &window.txtFilePath}) {
        QTest::keyClicks(box, "typed");
        EXPECT_FALSE(box->text().contains("typed"));
        EXPECT_EQ(box->focusPolicy(), Qt::StrongFocus);
    }
}

TEST_F(MainWindowTest, ChangesADropDownListByTheWheelOnlyWhileItHasTheFocus)
{
    DropDownList& list = window.cboProtocol;
    for (const char* item : {"TCP", "UDP", "MCAST"})
        list.AddItem(item);
    list.SetText("UDP");
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto turnWheel = [&] {
        const QPointF middle = QRectF(list.rect()).center();
        QWheelEvent down(middle, list.mapToGlobal(middle), {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&down);  // as from a real mouse, which can give the focus
        qApp->notify(&list, &down);
    };
    turnWheel();
    turnWheel();
    EXPECT_EQ(list.Text(), "UDP");
    EXPECT_FALSE(list.hasFocus());
    list.setFocus();
    turnWheel();
    EXPECT_EQ(list.Text(), "MCAST");
}

TEST_F(MainWindowTest, ShowsAnEmptyCheckBoxInADarkTheme)
{
    // Three times the contrast of no difference, as guidelines for controls count it.
    constexpr int kBrightEnough = 126;
    const QColor dark(53, 53, 53);
    window.setPalette(
        QPalette(Qt::white, dark, Qt::gray, Qt::black, Qt::darkGray, Qt::white, QColor(35, 35, 35)));
    CheckBox& box = window.chkReconnect;
    QStyleOptionButton option;
    option.initFrom(&box);
    const QPoint middle = box.style()->subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box).center();
    const QImage picture = window.grab(QRect(box.mapTo(&window, QPoint()), box.size())).toImage();
    int brightest = 0;
    for (int x = 0; x < middle.x() * picture.devicePixelRatio(); ++x) {
        const int y = static_cast<int>(middle.y() * picture.devicePixelRatio());
        brightest = std::max(brightest, qGray(picture.pixel(x, y)));
    }
    EXPECT_GE(brightest, kBrightEnough);
}

TEST_F(MainWindowTest, LeavesTheThirdStateOfACheckBoxForGood)
{
    CheckBox& box = window.chkReconnect;
    box.SetValue(CheckBox::kNeither);
    for (const int value : {CheckBox::kUnticked, CheckBox::kTicked, CheckBox::kUnticked}) {
        box.click();
        EXPECT_EQ(box.Value(), value);
    }
}

TEST_F(MainWindowTest, LetsClicksThroughTheGateOneAtATime)
{
    std::string events;
    window.cmdPause.OnClick = [&] { events += "pause "; };
    window.cmdPlay.OnClick = [&] {
        window.cmdPause.click();
        events += "play ";
    };
    QTest::keyClick(&window.cmdPlay, Qt::Key_Return);
    window.cmdClear.click();
    EXPECT_EQ(events, "play pause ");
}

}  // namespace
}  // namespace platform::window
