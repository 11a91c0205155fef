#pragma once

#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>
#include <functional>
#include <utility>

namespace platform::window {

/// A scroll bar that is painted anew only when its slider moves by a pixel, which a few lines among thousands
/// do not bring about.
class LineScrollBar final : public QScrollBar {
public:
    using QScrollBar::QScrollBar;

    /// Changes range and value together; where the slider was meanwhile does not matter.
    void Change(const std::function<void()>& changes)
    {
        changing_ = true;
        changes();
        changing_ = false;
        UpdateIfMoved(SliderValueChange);
    }

protected:
    void sliderChange(SliderChange change) override
    {
        if (!changing_)
            UpdateIfMoved(change);
    }

private:
    void UpdateIfMoved(SliderChange change)
    {
        QStyleOptionSlider option;
        initStyleOption(&option);
        const QRect slider =
            style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
        if (std::exchange(slider_, slider) != slider)
            QScrollBar::sliderChange(change);
    }

    QRect slider_;
    bool changing_ = false;
};

}  // namespace platform::window
