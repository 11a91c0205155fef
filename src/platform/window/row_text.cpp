#include "platform/window/row_text.h"

#include "platform/window/text.h"

namespace platform::window {
namespace {

constexpr QChar kEllipsis(0x2026);

}  // namespace

RowText::RowText(const QFontMetrics& metrics, int width)
    : metrics_(metrics), width_(width), ellipsisWidth_(metrics.horizontalAdvance(kEllipsis))
{
    widths_.fill(kNotMeasured);
}

QString RowText::Of(std::string_view utf8)
{
    QString text;
    qsizetype fitsBesideEllipsis = 0;
    int used = 0;
    // Characters without a width do not count, but their number must end somewhere.
    for (int characters = 0; !utf8.empty() && characters < width_; ++characters) {
        const char32_t character = TakeVisible(utf8);
        used += WidthOf(character);
        if (used > width_)
            return text.left(fitsBesideEllipsis) + kEllipsis;
        text += QChar::fromUcs4(character);
        if (used + ellipsisWidth_ <= width_)
            fitsBesideEllipsis = text.size();
    }
    return text;
}

int RowText::WidthOf(char32_t character)
{
    if (character >= widths_.size())
        return Measured(character);
    int& width = widths_[character];
    if (width == kNotMeasured)
        width = Measured(character);
    return width;
}

int RowText::Measured(char32_t character) const
{
    if (QChar::requiresSurrogates(character))
        return metrics_.horizontalAdvance(QString::fromUcs4(&character, 1));
    return metrics_.horizontalAdvance(QChar(character));
}

}  // namespace platform::window
