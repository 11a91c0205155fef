#include "platform/window/main_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QTest>

#include "platform/failure.h"
#include "platform/window/caption_font.h"
#include "support/failure_of.h"

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
    struct Case {
        const char* name;
        QRect place;  // in pixels, relative to the window
    };
    const Case cases[] = {
        {"Frame1", {8, 8, 361, 121}},      {"txtIPAddress", {96, 24, 137, 19}},
        {"cmdApply", {296, 96, 65, 25}},   {"DataViewList", {376, 8, 313, 173}},
        {"Label1", {64, 168, 81, 17}},     {"chkTransferTime", {272, 160, 97, 17}},
        {"lstStatus", {64, 192, 305, 43}}, {"txtFilePath", {64, 240, 529, 19}},
    };
    window.show();
    window.resize(2000, 2000);
    EXPECT_EQ(window.size(), QSize(725, 263));
    EXPECT_EQ(window.windowIcon().availableSizes(), (QList<QSize>{{32, 32}, {16, 16}}));
    for (const Case& each : cases) {
        const auto* const widget = window.findChild<QWidget*>(each.name);
        ASSERT_NE(widget, nullptr) << each.name;
        EXPECT_EQ(QRect(widget->mapTo(&window, QPoint()), widget->size()), each.place) << each.name;
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

TEST_F(MainWindowTest, MovesTheFocusThroughNamedInputsInOrderFromOpenFile)
{
    const QString order =
        "cmdOpenDialogue cmdPlay cmdPause cmdClear txtIPAddress txtPortNumber cboProtocol cboConnect "
        "chkReconnect "
        "cmdApply txtTimerInterval DataViewList txtFilePath txtDBTime lstStatus chkTransferTime txtHeartbeat "
        "cmdOpenDialogue";
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const QString& name : order.split(' ')) {
        QWidget* const input = window.focusWidget();
        ASSERT_NE(input, nullptr) << name.toStdString();
        EXPECT_EQ(input->objectName(), name);
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(input)->text(QAccessible::Name).isEmpty())
            << name.toStdString();
        QTest::keyClick(input, Qt::Key_Tab);
    }
}

TEST_F(MainWindowTest, KeepsTextsAsTheyAre)
{
    const std::string odd = "a & b\r\n\t\x01 \uFEFF\U0001F600"s + std::string(100'000, 'x');
    window.txtIPAddress.SetText(odd);
    window.txtFilePath.SetText(odd);
    EXPECT_EQ(window.txtIPAddress.Text(), odd);
    EXPECT_EQ(window.txtFilePath.Text(), odd);
    QTest::keyClicks(&window.txtPortNumber, "50&15");
    EXPECT_EQ(window.txtPortNumber.Text(), "50&15");
}

TEST_F(MainWindowTest, ShowsWhatTheProgramWritesForCopyingOnly)
{
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

TEST_F(MainWindowTest, TakesOnlyItemsOfADropDownList)
{
    DropDownList& list = window.cboProtocol;
    list.AddItem("TCP");
    list.AddItem("UDP");
    EXPECT_EQ(list.Text(), "") << "nothing is selected yet";
    list.SetText("udp");
    EXPECT_EQ(list.Text(), "UDP");
    for (const char* text : {"", "UD", "UDP ", "*"}) {
        EXPECT_EQ(FailureOf([&] { list.SetText(text); }), failure::kTextNotInList);
        EXPECT_EQ(list.Text(), "UDP");
    }
}

TEST_F(MainWindowTest, TicksABox)
{
    CheckBox& box = window.chkReconnect;
    for (const int value : {1, 2, 0}) {
        box.SetValue(value);
        EXPECT_EQ(box.Value(), value);
    }
    for (const int value : {-1, 3})
        EXPECT_EQ(FailureOf([&] { box.SetValue(value); }), failure::kInvalidPropertyValue);
    box.SetValue(2);
    box.click();
    EXPECT_EQ(box.Value(), 0) << "the operator leaves the third state for good";
    box.click();
    EXPECT_EQ(box.Value(), 1);
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
