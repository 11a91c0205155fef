#include "platform/window/list_box.h"

#include <QAccessibleValueChangeEvent>
#include <QAccessibleWidget>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QToolTip>
#include <algorithm>

#include "platform/failure.h"
#include "platform/window/text.h"

namespace platform::window {
namespace {

constexpr int kTextMargin = 3;  // left and right of a line, in pixels

/// What screen readers hear of a list box: a list of this name whose value is the selected line. Its lines are no objects
/// of their own, for there may be millions.
class Accessible final : public QAccessibleWidget {
public:
    explicit Accessible(ListBox* listBox) : QAccessibleWidget(listBox, QAccessible::List), listBox_(*listBox)
    {}

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        constexpr std::size_t kMostCharacters = 1000;  // what a reader may be asked to speak
        if (kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        return VisibleText(listBox_.SelectedText(BytesOfCharacters(kMostCharacters)), kMostCharacters);
    }

    [[nodiscard]] static QAccessibleInterface* Create(const QString& /*className*/, QObject* object)
    {
        auto* const listBox = dynamic_cast<ListBox*>(object);
        return listBox == nullptr ? nullptr : new Accessible(listBox);
    }

private:
    const ListBox& listBox_;
};

}  // namespace

ListBox::ListBox(QWidget* parent, ToolTips toolTips)
    : QAbstractScrollArea(parent), toolTips_(toolTips), scrollBar_(new LineScrollBar(this))
{
    QAccessible::installFactory(&Accessible::Create);
    setFocusPolicy(Qt::StrongFocus);
    // A frame paints every line in view anew, and shaping what is legible without it takes a third of that.
    QFont quicklyPainted;
    quicklyPainted.setStyleStrategy(QFont::PreferNoShaping);
    setFont(quicklyPainted);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBar(scrollBar_);
}

void ListBox::AddItem(const std::string& line)
{
    if (lines_.Count() == static_cast<std::size_t>(std::numeric_limits<int>::max()))
        throw Failure(failure::kOutOfMemory, "The list cannot hold more lines");
    lines_.Append(line);
    pacer_.Request();
}

void ListBox::SetListIndex(std::int32_t index)
{
    using Index = std::numeric_limits<std::int16_t>;
    if (index < Index::min() || index > Index::max())
        throw Failure(failure::kOverflow, "A list's index cannot be " + std::to_string(index));
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
    return scrollBar_->value();
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
    RowText texts(fontMetrics(), row.width() - 2 * kTextMargin);
    for (int line = TopLine(); line < Count() && row.top() < viewport()->height(); ++line) {
        PaintRow(painter, line, row, texts);
        row.translate(0, row.height());
    }
}

void ListBox::PaintRow(QPainter& painter, int line, const QRect& row, RowText& texts) const
{
    const bool selected = line == selected_;
    if (selected)
        painter.fillRect(row, palette().highlight());
    painter.setPen(palette().color(selected ? QPalette::HighlightedText : QPalette::Text));

    // No character is narrower than a pixel, so this many fill the row, whatever the length of the line.
    const auto mostBytes = BytesOfCharacters(static_cast<std::size_t>(row.width()));
    const std::string beginning = lines_.Line(static_cast<std::size_t>(line), mostBytes);
    painter.drawText(row.left() + kTextMargin, row.top() + fontMetrics().ascent(), texts.Of(beginning));

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

void ListBox::UpdateScrollBar()
{
    scrollBar_->setPageStep(LinesInView());
    scrollBar_->setRange(0, std::max(0, Count() - LinesInView()));
}

void ListBox::ShowChanges()
{
    const int topBefore = TopLine();
    scrollBar_->Change([this] {
        UpdateScrollBar();
        if (reveal_ && selected_ >= 0) {
            const int lowestTop = selected_ - LinesInView() + 1;
            scrollBar_->setValue(std::clamp(TopLine(), lowestTop, selected_));
        }
    });
    // The pointer may rest on another record now.
    if (TopLine() != topBefore || Count() == 0)
        QToolTip::hideText();
    if (announce_ && QAccessible::isActive()) {
        QAccessibleValueChangeEvent changed(this, QString());
        QAccessible::updateAccessibility(&changed);
    }
    reveal_ = false;
    announce_ = false;
    viewport()->update();
}

}  // namespace platform::window
