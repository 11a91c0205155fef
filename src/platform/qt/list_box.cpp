#include "platform/qt/list_box.h"

#include <QAccessible>
#include <QAccessibleValueChangeEvent>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOptionFocusRect>
#include <algorithm>
#include <cmath>

#include "platform/failure.h"
#include "platform/failure_numbers.h"
#include "platform/qt/list_box_accessible.h"
#include "platform/qt/text.h"

namespace platform::qt {
namespace {

constexpr int kTextMargin = 3;  // left and right of a line, in pixels

/// As much of a text as fits into a width, with an ellipsis where it is cut. The text is not laid out for that: for
/// a long one this would be the dearest part of painting.
QString Fitting(const QString& text, const QFontMetrics& metrics, int width)
{
    const QChar ellipsis(0x2026);
    const int widthBesideEllipsis = width - metrics.horizontalAdvance(ellipsis);
    int used = 0;
    qsizetype fits = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        used += metrics.horizontalAdvance(text[i]);
        if (used > width)
            return text.left(fits) + ellipsis;
        if (used <= widthBesideEllipsis && !text[i].isHighSurrogate())
            fits = i + 1;
    }
    return text;
}

}  // namespace

ListBox::ListBox(QWidget* parent) : QAbstractScrollArea(parent)
{
    QAccessible::installFactory(&ListBoxAccessible::Create);
    setFocusPolicy(Qt::StrongFocus);
    // A frame paints every line in view anew, and shaping what is legible without it takes a third of that.
    QFont quicklyPainted;
    quicklyPainted.setStyleStrategy(QFont::PreferNoShaping);
    setFont(quicklyPainted);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void ListBox::AddItem(const std::string& line)
{
    if (lines_.Count() == static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw Failure(failure::kOutOfMemory, "The list cannot hold more lines");
    lines_.Append(line);
    pacer_.Request();
}

void ListBox::SetListIndex(std::int16_t index)
{
    if (index < -1 || index >= Count())
        throw Failure(failure::kInvalidPropertyValue, "The list has no line " + std::to_string(index));
    selected_ = index;
    reveal_ = true;
    announce_ = true;
    pacer_.Request();
}

void ListBox::Clear()
{
    lines_.Clear();
    selected_ = -1;
    pacer_.Request();
}

std::string ListBox::SelectedText(std::size_t mostBytes) const
{
    return selected_ < 0 ? std::string() : lines_.Line(static_cast<std::size_t>(selected_), mostBytes);
}

int ListBox::TopLine() const
{
    return verticalScrollBar()->value();
}

int ListBox::LinesInView() const
{
    return std::max(1, viewport()->height() / RowHeight());
}

int ListBox::Count() const
{
    return static_cast<int>(lines_.Count());
}

int ListBox::RowHeight() const
{
    return std::max(1, fontMetrics().height());
}

/// A scroll area's paintEvent is its viewport's; its own, of the frame, arrives here only.
bool ListBox::event(QEvent* event)
{
    const bool handled = QAbstractScrollArea::event(event);
    if (event->type() == QEvent::Paint && hasFocus())
        PaintFocus();
    return handled;
}

void ListBox::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(viewport());
    QRect row(0, 0, viewport()->width(), RowHeight());
    for (int line = TopLine(); line < Count() && row.top() < viewport()->height(); ++line) {
        PaintRow(painter, line, row);
        row.translate(0, row.height());
    }
}

void ListBox::PaintRow(QPainter& painter, int line, const QRect& row) const
{
    const bool selected = line == selected_;
    if (selected)
        painter.fillRect(row, palette().highlight());
    painter.setPen(palette().color(selected ? QPalette::HighlightedText : QPalette::Text));

    // No character is narrower than a pixel, so this many fill the row, whatever the length of the line.
    const auto mostCharacters = static_cast<std::size_t>(row.width());
    const std::string beginning =
        lines_.Line(static_cast<std::size_t>(line), BytesOfCharacters(mostCharacters));
    const QRect place = row.adjusted(kTextMargin, 0, -kTextMargin, 0);
    const QString text = VisibleText(beginning, mostCharacters);
    painter.drawText(place.left(), row.top() + fontMetrics().ascent(),
                     Fitting(text, fontMetrics(), place.width()));

    if (selected && hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = row;
        option.backgroundColor = palette().color(QPalette::Highlight);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}

/// Styles mark the focus of a text box in its frame, but of a list in its lines only, and it may have none.
void ListBox::PaintFocus()
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ListBox::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    UpdateScrollBar();
}

void ListBox::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        UpdateScrollBar();
}

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

void ListBox::CopySelected() const
{
    if (selected_ >= 0)
        QGuiApplication::clipboard()->setText(ToQt(SelectedText()));
}

void ListBox::UpdateScrollBar()
{
    verticalScrollBar()->setPageStep(LinesInView());
    verticalScrollBar()->setRange(0, std::max(0, Count() - LinesInView()));
}

void ListBox::ShowChanges()
{
    UpdateScrollBar();
    if (reveal_ && selected_ >= 0) {
        const int lowestTop = selected_ - LinesInView() + 1;
        verticalScrollBar()->setValue(std::clamp(TopLine(), lowestTop, selected_));
    }
    if (announce_ && QAccessible::isActive()) {
        QAccessibleValueChangeEvent changed(this, QString());
        QAccessible::updateAccessibility(&changed);
    }
    reveal_ = false;
    announce_ = false;
    viewport()->update();
}

}  // namespace platform::qt
