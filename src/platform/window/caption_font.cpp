#include "platform/window/caption_font.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QFontMetrics>
#include <QLabel>
#include <QStyle>
#include <QStyleOptionButton>
#include <algorithm>

namespace platform::window {
namespace {

/// A size in pixels and a width in per cent of the font's own.
struct Look {
    int size;
    int stretch;
};

/// From the best to read to the last resort. A text box is 19 pixels high with its frame.
constexpr Look kLooks[] = {{12, 100}, {12, 92}, {11, 100}, {11, 92}, {11, 84}, {10, 100}, {10, 92},
                           {10, 84},  {9, 100}, {9, 84},   {8, 100}, {8, 84},  {8, 70}};
constexpr int kSlack = 1;  // pixels; widths round differently at other scales

bool AllFit(const QFont& font, const std::vector<Caption>& captions)
{
    const QFontMetrics metrics(font);
    return std::ranges::all_of(captions, [&](const Caption& caption) {
        return metrics.horizontalAdvance(caption.text) + kSlack <= caption.width;
    });
}

}  // namespace

Caption CaptionOf(const QWidget& widget)
{
    if (const auto* const label = qobject_cast<const QLabel*>(&widget))
        return {label->text(), label->contentsRect().width()};
    const auto* const button = qobject_cast<const QAbstractButton*>(&widget);
    const bool isCheckBox = qobject_cast<const QCheckBox*>(button) != nullptr;
    QStyleOptionButton option;
    option.initFrom(button);
    const QRect contents = button->style()->subElementRect(
        isCheckBox ? QStyle::SE_CheckBoxContents : QStyle::SE_PushButtonContents, &option, button);
    return {button->text(), contents.width()};
}

QFont FontThatFits(const QFont& font, const std::vector<Caption>& captions)
{
    QFont fitting(font);
    for (const Look& look : kLooks) {
        fitting.setPixelSize(look.size);
        fitting.setStretch(look.stretch);
        if (AllFit(fitting, captions))
            break;
    }
    return fitting;
}

}  // namespace platform::window
