#pragma once

#include <QFontMetrics>
#include <QString>
#include <array>
#include <string_view>

namespace platform::window {

/// Cuts texts to the width of a row. They are not laid out for that: for long ones this would be the dearest
/// part of painting. The widths of frequent characters are measured once, so one object serves all rows of a
/// frame.
class RowText {
public:
    /// The width is in pixels.
    RowText(const QFontMetrics& metrics, int width);

    /// As much of a UTF-8 text, visible on one line, as fits into the width, with an ellipsis where it is cut.
    /// Costs no more than what it returns.
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
