#pragma once

#include <QFontMetrics>
#include <QString>
#include <array>
#include <string>
#include <string_view>

#include "platform/regional/qt_values.h"

/// Texts of any length and any characters, made fit to be shown.
///
/// A character that shows nothing, moves others about or ends the line is *unseen*: control and formatting characters,
/// separators of lines and paragraphs. Texts are UTF-8 but where they are Qt's.
namespace platform::window {

using regional::FromQt;
using regional::ToQt;

/// The text without its unseen characters.
[[nodiscard]] QString WithoutUnseen(const QString& text);

/// The first characters of a text on one line, with a sign for each that is unseen: an arrow for a tab or a line break
/// (CR LF is one), a dot for others. Costs no more than what it returns.
[[nodiscard]] QString VisibleText(std::string_view utf8, std::size_t mostCharacters);

/// Bytes of a text that hold its first characters whole.
[[nodiscard]] constexpr std::size_t BytesOfCharacters(std::size_t characters)
{
    constexpr std::size_t kLongestCharacter = 4;
    return characters * kLongestCharacter;
}

/// A record as it would be printed: HTML that shows its text, and nothing in it taken for HTML, in a font of fixed
/// width. Line breaks are kept. A record of more than 60 lines shows the first 59 and an ellipsis; a long line its first
/// 100 characters.
[[nodiscard]] QString ReceiptHtml(std::string_view utf8);

/// As many of a record's first bytes as its receipt needs, but for records of very long lines.
inline constexpr std::size_t kMostBytesOfReceipt = std::size_t{64} * 1024;

/// Cuts texts to the width of a row, as VisibleText shows them. Laying a long text out only to cut it would take longer
/// than painting it, so the widths of its characters are added up; those of frequent ones are measured once. One
/// object serves all rows of a frame.
class RowText {
public:
    /// The width is in pixels.
    RowText(const QFontMetrics& metrics, int width);

    /// As much of a text as fits into the width, with an ellipsis where it is cut. Costs no more than what it returns.
    [[nodiscard]] QString Of(std::string_view utf8);

private:
    [[nodiscard]] int WidthOf(char32_t character);
    [[nodiscard]] int Measured(char32_t character) const;

    static constexpr int kNotMeasured = -1;

    QFontMetrics metrics_;
    int width_;
    int ellipsisWidth_;
    std::array<int, 256> widths_;
};

}  // namespace platform::window
