#pragma once

#include <QFont>
#include <QString>
#include <vector>

class QWidget;

namespace platform::window {

/// A caption and the width that its widget leaves for it, in pixels independent of the display's scale.
struct Caption {
    QString text;
    int width;
};

/// The caption of a label, a button or a check box, which has its size and its style already.
[[nodiscard]] Caption CaptionOf(const QWidget& widget);

/// The font in the size of those that suit the window, the best to read first, in which every caption fits
/// its place; slightly narrowed where that allows a larger one.
[[nodiscard]] QFont FontThatFits(const QFont& font, const std::vector<Caption>& captions);

}  // namespace platform::window
