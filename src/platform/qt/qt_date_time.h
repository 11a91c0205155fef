#pragma once

#include <QDate>
#include <QTime>

#include "platform/date_time.h"

namespace platform::qt {

[[nodiscard]] QDate DateOf(DateTime moment);
[[nodiscard]] QTime TimeOf(DateTime moment);
[[nodiscard]] DateTime FromQt(QDate date, QTime time);

}  // namespace platform::qt
