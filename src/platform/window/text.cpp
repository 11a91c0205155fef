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

/// The character that stands for one that shows nothing, moves others about or ends the line.
char32_t Visible(char32_t character)
{
    if (character == U'\n' || character == U'\r')
        return kLineBreak;
    if (character == U'\t')
        return kTab;
    switch (QChar::category(character)) {
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            return kLineBreak;
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Other_Surrogate:
            return kUnseen;
        default:
            return character;
    }
}

}  // namespace

char32_t TakeVisible(std::string_view& utf8)
{
    const char32_t character = TakeCharacter(utf8);
    if (character == U'\r' && utf8.starts_with('\n'))
        utf8.remove_prefix(1);
    return Visible(character);
}

QString VisibleText(std::string_view utf8, std::size_t mostCharacters)
{
    QString visible;
    visible.reserve(static_cast<qsizetype>(std::min(utf8.size(), mostCharacters)));
    for (; !utf8.empty() && mostCharacters > 0; --mostCharacters)
        visible += QChar::fromUcs4(TakeVisible(utf8));
    return visible;
}

}  // namespace platform::window
