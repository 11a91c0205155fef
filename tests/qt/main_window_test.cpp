#include "platform/qt/main_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QTest>

#include "platform/failure.h"
#include "platform/failure_numbers.h"
#include "platform/qt/caption_font.h"

namespace platform::qt {
namespace {

using namespace std::string_literals;

QString NameOf(const QObject* object)
{
    return object == nullptr ? QString() : object->objectName();
}

class MainWindowTest : public testing::Test {
protected:
    EventGate gate;
    MainWindow window{gate};
};

TEST_F(MainWindowTest, KeepsItsSizeAndItsControlsTheirPlaces)
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
    for (const Case& each : cases) {
        const auto* const widget = window.findChild<QWidget*>(each.name);
        ASSERT_NE(widget, nullptr) << each.name;
        EXPECT_EQ(QRect(widget->mapTo(&window, QPoint()), widget->size()), each.place) << each.name;
    }
}

TEST_F(MainWindowTest, HasNoControlOverAnother)
{
    const auto widgets =
        window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly) +
        window.findChild<QFrame*>("Frame1")->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget* const one : widgets) {
        EXPECT_TRUE(one->parentWidget()->rect().contains(one->geometry())) << NameOf(one).toStdString();
        for (const QWidget* const other : widgets) {
            if (one != other && one->parentWidget() == other->parentWidget() && !one->isWindow() &&
                !other->isWindow()) {
                const QRect common = one->geometry().intersected(other->geometry());
                EXPECT_LE(common.width(), 1)
                    << NameOf(one).toStdString() << " " << NameOf(other).toStdString();
            }
        }
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
        const auto labels = window.findChildren<QLabel*>();
        const auto buttons = window.findChildren<QAbstractButton*>();
        QList<const QWidget*> captioned(labels.begin(), labels.end());
        captioned.append(QList<const QWidget*>(buttons.begin(), buttons.end()));
        int captions = 0;
        for (const QWidget* const widget : captioned) {
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

TEST_F(MainWindowTest, MovesTheFocusInOrderFromOpenFile)
{
    window.show();
    const QStringList order = {"cmdOpenDialogue", "cmdPlay",        "cmdPause",         "cmdClear",
                               "txtIPAddress",    "txtPortNumber",  "cboProtocol",      "cboConnect",
                               "chkReconnect",    "cmdApply",       "txtTimerInterval", "DataViewList",
                               "txtFilePath",     "txtDBTime",      "lstStatus",        "chkTransferTime",
                               "txtHeartbeat",    "cmdOpenDialogue"};
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const QString& name : order) {
        EXPECT_EQ(NameOf(window.focusWidget()), name);
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    }
}

TEST_F(MainWindowTest, NamesEveryInputForScreenReaders)
{
    for (const QLabel* const label : window.findChildren<QLabel*>())
        EXPECT_NE(label->buddy(), nullptr) << NameOf(label).toStdString();
    int inputs = 0;
    for (QWidget* const widget : window.findChildren<QWidget*>()) {
        if (!NameOf(widget).startsWith("txt") && !NameOf(widget).startsWith("c") &&
            !NameOf(widget).contains("st"))
            continue;
        if (widget->focusPolicy() == Qt::NoFocus || widget->focusProxy() != nullptr)
            continue;
        ++inputs;
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(accessible, nullptr);
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << NameOf(widget).toStdString();
    }
    EXPECT_EQ(inputs, 17);
}

TEST_F(MainWindowTest, BringsItsIconsInBothSizes)
{
    EXPECT_TRUE(window.windowIcon().availableSizes().contains(QSize(32, 32)));
    EXPECT_TRUE(window.windowIcon().availableSizes().contains(QSize(16, 16)));
}

TEST_F(MainWindowTest, KeepsTextsAsTheyAre)
{
    const std::string odd = "a & b\r\n\t\x01 \uFEFF\U0001F600"s + std::string(100'000, 'x');
    for (platform::TextBox* const box : {static_cast<platform::TextBox*>(&window.txtIPAddress),
                                         static_cast<platform::TextBox*>(&window.txtFilePath)}) {
        box->SetText(odd);
        EXPECT_EQ(box->Text(), odd);
    }
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
        try {
            list.SetText(text);
            ADD_FAILURE() << "took \"" << text << "\"";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.Number(), failure::kTextNotInList);
        }
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
        EXPECT_THROW(box.SetValue(value), Failure);
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
}  // namespace platform::qt
