#pragma once

#include <QAbstractScrollArea>
#include <cstdint>
#include <limits>
#include <string>

#include "platform/controls.h"
#include "platform/window/frame_pacer.h"
#include "platform/window/line_scroll_bar.h"
#include "platform/window/line_store.h"
#include "platform/window/text.h"

class QHelpEvent;

namespace platform::window {

/// A list box whose cost per line does not depend on how many there are: it paints the lines in view only, at
/// most once a display frame, and scrolls in lines, not in pixels.
///
/// A line shows on one row, without what does not fit; Ctrl+C copies the selected line as it is. An index has 16 bits, as
/// in the lists that operators know: the program can select none of the lines past 32,767, the operator can.
class ListBox final : public QAbstractScrollArea, public platform::ListBox {
public:
    /// What shows while the pointer rests on a line. Nothing is done for it before.
    enum class ToolTips { kNone, kReceipts };

    explicit ListBox(QWidget* parent, ToolTips toolTips = ToolTips::kNone);

    void AddItem(const std::string& line) override;
    void SetListIndex(std::int32_t index) override;
    void Clear() override;

    /// Index of the selected line, counted from 0; -1 for none.
    [[nodiscard]] int SelectedLine() const { return selected_; }

    /// The selected line as it was added, or its beginning; empty for none.
    [[nodiscard]] std::string SelectedText(
        std::size_t mostBytes = std::numeric_limits<std::size_t>::max()) const;

    /// Index of the line at the top of the view.
    [[nodiscard]] int TopLine() const;

    /// Number of lines that fit into the view as a whole, at least 1.
    [[nodiscard]] int LinesInView() const;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    [[nodiscard]] int Count() const;
    [[nodiscard]] int RowHeight() const;
    void PaintRow(QPainter& painter, int line, const QRect& row, RowText& texts) const;
    void PaintFocus();
    void SelectByOperator(int line);
    void SelectAt(const QPoint& position);
    void CopySelected() const;
    void ShowReceipt(const QHelpEvent& event);
    void UpdateScrollBar();
    void ShowChanges();

    const ToolTips toolTips_;
    LineScrollBar* const scrollBar_;  ///< The widget owns it.
    LineStore lines_;
    int selected_ = -1;
    bool reveal_ = false;    ///< The selected line is to be scrolled into view.
    bool announce_ = false;  ///< Screen readers have not heard of the selected line yet.
    FramePacer pacer_{[this] { ShowChanges(); }};
};

}  // namespace platform::window
