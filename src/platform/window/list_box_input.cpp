#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QToolTip>
#include <algorithm>
#include <cmath>

#include "platform/window/list_box.h"
#include "platform/window/text.h"

/// What the operator does with a list box: selects, copies, rests the pointer on a line.
namespace platform::window {

void ListBox::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy))
        return CopySelected();
    switch (event->key()) {
        case Qt::Key_Up:
            return SelectByOperator(selected_ - 1);
        case Qt::Key_Down:
            return SelectByOperator(selected_ + 1);
        case Qt::Key_PageUp:
            return SelectByOperator(selected_ - LinesInView());
        case Qt::Key_PageDown:
            return SelectByOperator(selected_ + LinesInView());
        case Qt::Key_Home:
            return SelectByOperator(0);
        case Qt::Key_End:
            return SelectByOperator(Count() - 1);
        default:
            QAbstractScrollArea::keyPressEvent(event);
    }
}

void ListBox::mousePressEvent(QMouseEvent* event)
{
    SelectAt(event->position().toPoint());
}

void ListBox::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons().testFlag(Qt::LeftButton))
        SelectAt(event->position().toPoint());
}

bool ListBox::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || toolTips_ == ToolTips::kNone)
        return QAbstractScrollArea::viewportEvent(event);
    ShowReceipt(*static_cast<QHelpEvent*>(event));
    return true;
}

void ListBox::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu menu(this);
    QAction* const copy = menu.addAction(QStringLiteral("Copy"), this, [this] { CopySelected(); });
    copy->setEnabled(selected_ >= 0);
    menu.exec(event->globalPos());
}

void ListBox::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    update();
    viewport()->update();
}

void ListBox::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    update();
    viewport()->update();
}

void ListBox::SelectByOperator(int line)
{
    if (Count() == 0)
        return;
    selected_ = std::clamp(line, 0, Count() - 1);
    reveal_ = true;
    announce_ = true;
    pacer_.RunNow();
}

void ListBox::SelectAt(const QPoint& position)
{
    const int row = static_cast<int>(std::floor(position.y() / static_cast<double>(RowHeight())));
    SelectByOperator(TopLine() + std::clamp(row, -1, LinesInView()));
}

void ListBox::ShowReceipt(const QHelpEvent& event)
{
    const int row = event.y() / RowHeight();
    const int line = TopLine() + row;
    if (line >= Count())
        return QToolTip::hideText();
    const std::string record = lines_.Line(static_cast<std::size_t>(line), kMostBytesOfReceipt);
    if (record.empty())
        return QToolTip::hideText();
    // It is hidden when the pointer leaves the row.
    const QRect area(0, row * RowHeight(), viewport()->width(), RowHeight());
    QToolTip::showText(event.globalPos(), ReceiptHtml(record), viewport(), area);
}

void ListBox::CopySelected() const
{
    if (selected_ >= 0)
        QGuiApplication::clipboard()->setText(ToQt(SelectedText()));
}

}  // namespace platform::window
