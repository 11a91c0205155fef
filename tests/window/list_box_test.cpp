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

#include "platform/window/line_store.h"
#include "platform/window/text.h"
#include "support/texts.h"

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

TEST_F(ListBoxTest, GivesBackLinesOfAnyLengthAndStartsAnewAfterClear)
{
    const std::size_t block = LineStore::kBlockSize;
    Texts lines;
    for (const std::size_t length : {0UL, 5UL, block - 7, 2UL, 0UL, 1UL, block, 3 * block + 1, 0UL, 4UL}) {
        lines.emplace_back(length, static_cast<char>('a' + lines.size()));
        if (length > 1)
            lines.back().front() = '\0';
    }
    for (const std::size_t first : {0U, 2U}) {
        list.Clear();
        EXPECT_TRUE(WaitForTopLine(0));
        for (std::size_t line = first; line < lines.size(); ++line)
            list.AddItem(lines[line]);
        for (std::size_t line = first; line < lines.size(); ++line) {
            list.SetListIndex(static_cast<int>(line - first));
            EXPECT_TRUE(list.SelectedText() == lines[line]) << line;
        }
    }
}

TEST_F(ListBoxTest, FollowsTheKeyboard)
{
    const std::tuple<Qt::Key, int, int> cases[] = {
        {Qt::Key_Down, 0, 0},   {Qt::Key_Up, 0, 0},       {Qt::Key_PageDown, 10, 1}, {Qt::Key_End, 99, 90},
        {Qt::Key_Down, 99, 90}, {Qt::Key_PageUp, 89, 89}, {Qt::Key_Up, 88, 88},      {Qt::Key_Home, 0, 0},
    };
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.SelectedLine(), -1) << "of an empty list";
    AddLines(100);
    for (const auto& [key, selected, top] : cases) {
        QTest::keyClick(&list, key);
        EXPECT_EQ(list.SelectedLine(), selected) << key;
        EXPECT_EQ(list.TopLine(), top) << key;
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
    for (ListBox* const list : {&records, &statusLines}) {
        list->resize(200, 200);
        list->show();
        list->AddItem("first");
        list->AddItem("Table 4\r\n 2 <b>Tea</b>");
    }
    const auto rest = [](ListBox& list, int row) {
        const QPoint place(5, row * list.fontMetrics().height() + 2);
        QHelpEvent rests(QEvent::ToolTip, place, list.viewport()->mapToGlobal(place));
        QApplication::sendEvent(list.viewport(), &rests);
        return QToolTip::text();
    };
    const auto isHidden = [] { return QToolTip::text().isEmpty(); };
    EXPECT_EQ(rest(records, 1), ReceiptHtml("Table 4\n 2 <b>Tea</b>"));
    static_cast<void>(rest(records, 2));
    EXPECT_TRUE(QTest::qWaitFor(isHidden)) << "below the last line";
    EXPECT_EQ(rest(statusLines, 1), "");
}

TEST(RowTexts, ShowWhatFitsWithAnEllipsisWhereTheyAreCut)
{
    const QFontMetrics metrics{QFont()};
    const QChar ellipsis(0x2026);
    for (const std::string text : {"WWWWWWWWWWWW", "1 WHITE\r\n\t3.20\r\n1 TEA",
                                   "caf\u00E9 \u20AC \u041A\u043E\u0444", "\U0001F600\U0001F600\U0001F600"}) {
        const QString whole = VisibleText(text, text.size());
        qsizetype before = 0;
        for (int width = metrics.horizontalAdvance(ellipsis); before < whole.size(); ++width) {
            const QString shown = RowText(metrics, width).Of(text);
            const qsizetype kept = shown.size() - (shown == whole ? 0 : 1);
            ASSERT_EQ(shown, shown == whole ? whole : whole.left(kept) + ellipsis) << text << " in " << width;
            ASSERT_FALSE(kept > 0 && shown[kept - 1].isHighSurrogate()) << text << " in " << width;
            ASSERT_LE(metrics.horizontalAdvance(shown), width + 1) << text;
            ASSERT_GE(kept, before) << text << " in " << width;
            ASSERT_LE(kept - before, 2) << "it could have been shown before, " << text << " in " << width;
            before = kept;
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
