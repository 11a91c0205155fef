#include "platform/window/list_box.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QGuiApplication>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

#include "platform/failure.h"
#include "platform/window/text.h"
#include "support/failure_of.h"

namespace platform::window {
namespace {

class ListBoxTest : public testing::Test {
protected:
    ListBoxTest()
    {
        list.resize(200, 10 * list.fontMetrics().height() + 2 * list.frameWidth());
        list.show();
    }

    void AddLines(int count)
    {
        for (int i = 0; i < count; ++i)
            list.AddItem("line " + std::to_string(i));
    }

    bool WaitForTopLine(int line)
    {
        return QTest::qWaitFor([&] { return list.TopLine() == line; });
    }

    ListBox list{nullptr};
};

TEST_F(ListBoxTest, ScrollsTheSelectedLineIntoView)
{
    AddLines(100);
    ASSERT_EQ(list.LinesInView(), 10);
    list.SetListIndex(99);
    EXPECT_TRUE(WaitForTopLine(90));
    list.SetListIndex(95);
    list.SetListIndex(40);
    EXPECT_TRUE(WaitForTopLine(40));
    EXPECT_EQ(list.SelectedText(), "line 40");
}

TEST_F(ListBoxTest, RefusesALineThatIsNotThereAndKeepsItsSelection)
{
    AddLines(100);
    list.SetListIndex(99);
    ASSERT_TRUE(WaitForTopLine(90));
    for (const int index : {100, -2, 32767, -32768})
        EXPECT_EQ(FailureOf([&] { list.SetListIndex(index); }), failure::kInvalidPropertyValue) << index;
    for (const int index : {32768, -32769, std::numeric_limits<int>::max()})
        EXPECT_EQ(FailureOf([&] { list.SetListIndex(index); }), failure::kOverflow) << index;
    EXPECT_EQ(list.SelectedLine(), 99);
    list.Clear();
    EXPECT_TRUE(WaitForTopLine(0));
    EXPECT_EQ(list.SelectedLine(), -1);
    EXPECT_THROW(list.SetListIndex(0), Failure);
    EXPECT_NO_THROW(list.SetListIndex(-1));
}

TEST_F(ListBoxTest, SelectsNoLinePastTheLastIndexOf16Bits)
{
    AddLines(32769);
    list.SetListIndex(32767);
    EXPECT_EQ(FailureOf([&] { list.SetListIndex(32768); }), failure::kOverflow);
    EXPECT_EQ(list.SelectedText(), "line 32767");
}

TEST_F(ListBoxTest, FollowsTheKeyboard)
{
    struct Case {
        Qt::Key key;
        int selected;
        int top;
    };
    const Case cases[] = {
        {Qt::Key_Down, 0, 0},   {Qt::Key_Up, 0, 0},       {Qt::Key_PageDown, 10, 1}, {Qt::Key_End, 99, 90},
        {Qt::Key_Down, 99, 90}, {Qt::Key_PageUp, 89, 89}, {Qt::Key_Up, 88, 88},      {Qt::Key_Home, 0, 0},
    };
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.SelectedLine(), -1) << "of an empty list";
    AddLines(100);
    for (const Case& each : cases) {
        QTest::keyClick(&list, each.key);
        EXPECT_EQ(list.SelectedLine(), each.selected) << each.key;
        EXPECT_EQ(list.TopLine(), each.top) << each.key;
    }
}

TEST_F(ListBoxTest, FollowsTheMouse)
{
    AddLines(100);
    list.SetListIndex(50);
    ASSERT_TRUE(WaitForTopLine(41));
    const int rowHeight = list.fontMetrics().height();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, {5, 3 * rowHeight + 1});
    EXPECT_EQ(list.SelectedLine(), 44);
    QWheelEvent towardsTheEnd({5, 5}, list.mapToGlobal(QPointF(5, 5)), {}, {0, -120}, {}, {},
                              Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(list.viewport(), &towardsTheEnd);
    EXPECT_EQ(list.TopLine(), 41 + QApplication::wheelScrollLines());
    EXPECT_EQ(list.SelectedLine(), 44);
    list.Clear();
    AddLines(2);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, {5, 8 * rowHeight});
    EXPECT_EQ(list.SelectedLine(), 1) << "below the last line";
}

TEST_F(ListBoxTest, CopiesTheSelectedLineAsItIs)
{
    const std::string line = "Table 4\r\n\t2 x Tea " + std::string(10'000, '=') + " end";
    list.AddItem(line);
    QGuiApplication::clipboard()->setText("before");
    QTest::keySequence(&list, QKeySequence::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "before");
    list.SetListIndex(0);
    QTest::keySequence(&list, QKeySequence::Copy);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), line);
}

TEST_F(ListBoxTest, PaintsTheLinesInViewOnlyHoweverLongListAndLinesAre)
{
    constexpr int kLines = 3'000'000;
    for (int i = 0; i < kLines; ++i)
        list.AddItem("x");
    list.AddItem(std::string(1'000'000, 'W') + "\n");
    QTest::keyClick(&list, Qt::Key_End);
    EXPECT_EQ(list.SelectedLine(), kLines);
    EXPECT_EQ(list.verticalScrollBar()->maximum(), kLines + 1 - 10);
    const QImage picture = list.grab().toImage();
    const QColor selection = list.palette().color(QPalette::Highlight);
    EXPECT_EQ(picture.pixelColor(2, picture.height() - 4), selection);
    EXPECT_NE(picture.pixelColor(2, 4), selection);
}

TEST(ListBox, ShowsTheReceiptOfTheLineOnWhichThePointerRests)
{
    ListBox records(nullptr, ListBox::ToolTips::kReceipts);
    ListBox statusLines(nullptr);
    const auto rest = [](ListBox& list, int row) {
        const QPoint place(5, row * list.fontMetrics().height() + 2);
        QHelpEvent rests(QEvent::ToolTip, place, list.viewport()->mapToGlobal(place));
        QApplication::sendEvent(list.viewport(), &rests);
        return QToolTip::text();
    };
    for (ListBox* const list : {&records, &statusLines}) {
        list->resize(200, 200);
        list->show();
        for (const char* line : {"first", "Table 4\r\n 2 <b>Tea</b>"})
            list->AddItem(line);
    }
    EXPECT_EQ(rest(records, 1), ReceiptHtml("Table 4\n 2 <b>Tea</b>"));
    static_cast<void>(rest(records, 2));
    const auto isHidden = [] { return QToolTip::text().isEmpty(); };
    EXPECT_TRUE(QTest::qWaitFor(isHidden)) << "below the last line";
    EXPECT_EQ(rest(statusLines, 1), "");
    EXPECT_EQ(rest(records, 0), ReceiptHtml("first"));
    QToolTip::hideText();
    EXPECT_TRUE(QTest::qWaitFor(isHidden));
}

TEST(RowTexts, ShowAsMuchAsFitsWithAnEllipsisWhereTheyAreCut)
{
    const QFontMetrics metrics{QFont()};
    const std::string texts[] = {std::string(100, 'W'), "1 FLAT WHITE\r\n\t3.20\r\n1 TEA",
                                 "caf\u00E9 \u20AC 4, \u041A\u043E\u0444\u0435",
                                 "\U0001F600\U0001F600\U0001F600", std::string(100, 'i')};
    for (const std::string& text : texts) {
        const QString whole = VisibleText(text, text.size());
        const auto widthOfFirst = [&](qsizetype characters) {
            int width = 0;
            for (const char32_t character : whole.left(characters).toUcs4())
                width += metrics.horizontalAdvance(QString::fromUcs4(&character, 1));
            return width;
        };
        const int ellipsis = metrics.horizontalAdvance(QChar(0x2026));
        const int widthOfWhole = widthOfFirst(whole.size());
        EXPECT_EQ(RowText(metrics, widthOfWhole).Of(text), whole) << text;
        for (int width = ellipsis; width < widthOfWhole; ++width) {
            const QString cut = RowText(metrics, width).Of(text);
            ASSERT_TRUE(cut.endsWith(QChar(0x2026))) << text << " in " << width;
            const qsizetype kept = cut.size() - 1;
            const qsizetype next = kept + (whole[kept].isHighSurrogate() ? 2 : 1);
            ASSERT_EQ(cut.left(kept), whole.left(kept)) << text << " in " << width;
            ASSERT_LE(widthOfFirst(kept) + ellipsis, width) << text;
            ASSERT_GT(widthOfFirst(next) + ellipsis, width) << text;
            ASSERT_FALSE(kept > 0 && cut[kept - 1].isHighSurrogate()) << text << " in " << width;
        }
    }
}

TEST_F(ListBoxTest, TellsScreenReadersItsSelectedLine)
{
    list.setAccessibleName("Status");
    list.AddItem("first\nline");
    list.SetListIndex(0);
    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&list);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::List);
    EXPECT_EQ(accessible->text(QAccessible::Name), "Status");
    EXPECT_EQ(accessible->text(QAccessible::Value), QString::fromUtf8("first\u21B5line"));
}

}  // namespace
}  // namespace platform::window
