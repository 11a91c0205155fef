#include "platform/window/text.h"

#include <QChar>
#include <algorithm>

#include "platform/ansi_code_page.h"

namespace platform::window {
namespace {

// Characters that nearly every font has.
constexpr char32_t kLineBreak = U'\u21B5';
constexpr char32_t kTab = U'\u2192';
constexpr char32_t kUnseen = U'\u00B7';
constexpr QChar kEllipsis(0x2026);

bool IsUnseen(char32_t character)
{
    switch (QChar::category(character)) {
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
            return true;
        default:
            return false;
    }
}

bool IsLineBreak(char32_t character)
{
    return character == U'\n' || character == U'\r' || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

/// What is shown in place of a character.
char32_t Visible(char32_t character)
{
    if (!IsUnseen(character))
        return character;
    if (IsLineBreak(character))
        return kLineBreak;
    return character == U'\t' ? kTab : kUnseen;
}

/// Takes the first character off a text that is not empty; CR LF is one, a line feed.
char32_t Take(std::string_view& utf8)
{
    const char32_t character = TakeCharacter(utf8);
    const bool endsWithLineFeed = character == U'\r' && utf8.starts_with('\n');
    return endsWithLineFeed ? TakeCharacter(utf8) : character;
}

/// The next line, cut where it is long, and the text moved on behind its line break.
QString TakeReceiptLine(std::string_view& utf8)
{
    constexpr qsizetype kMostCharacters = 100;
    QString line;
    qsizetype characters = 0;
    while (!utf8.empty()) {
        const char32_t character = Take(utf8);
        if (IsLineBreak(character))
            break;
        if (++characters <= kMostCharacters)
            line += QChar::fromUcs4(character == U'\t' ? U' ' : Visible(character));
        else if (characters == kMostCharacters + 1)
            line += kEllipsis;
    }
    return line;
}

}  // namespace

QString WithoutUnseen(const QString& text)
{
    QString seen;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(text[i], text[i + 1]) : char32_t{text[i].unicode()};
        i += isPair ? 1 : 0;
        if (!IsUnseen(character))
            seen += QChar::fromUcs4(character);
    }
    return seen;
}

QString VisibleText(std::string_view utf8, std::size_t mostCharacters)
{
    QString visible;
    visible.reserve(static_cast<qsizetype>(std::min(utf8.size(), mostCharacters)));
    for (; !utf8.empty() && mostCharacters > 0; --mostCharacters)
        visible += QChar::fromUcs4(Visible(Take(utf8)));
    return visible;
}

QString ReceiptHtml(std::string_view utf8)
{
    constexpr qsizetype kMostLines = 60;
    QStringList lines;
    while (!utf8.empty() && lines.size() < kMostLines)
        lines += TakeReceiptLine(utf8);
    if (!utf8.empty())
        lines.back() = kEllipsis;
    // A line break behind <pre> does not count; the record may begin with one.
    return QStringLiteral("<pre>\n") + lines.join(QLatin1Char('\n')).toHtmlEscaped() +
           QStringLiteral("</pre>");
}

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
        const char32_t character = Visible(Take(utf8));
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
