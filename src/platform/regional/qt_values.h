#pragma once

#include <QDate>
#include <QString>
#include <QTime>
#include <string>
#include <string_view>

#include "platform/date_time.h"

/// The program's values as Qt's and back.
namespace platform::regional {

/// UTF-8 as Qt's text and back. Every character survives the way there and back, a leading byte-order mark
/// included; a byte that is no UTF-8 becomes U+FFFD.
[[nodiscard]] QString ToQt(std::string_view utf8);
[[nodiscard]] std::string FromQt(const QString& text);

[[nodiscard]] QDate DateOf(DateTime moment);
[[nodiscard]] QTime TimeOf(DateTime moment);
[[nodiscard]] DateTime FromQt(QDate date, QTime time);

}  // namespace platform::regional
