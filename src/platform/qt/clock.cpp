#include "platform/qt/clock.h"

#include <QDateTime>

#include "platform/qt/qt_date_time.h"

namespace platform::qt {

DateTime Clock::Now() const
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    const auto second = std::chrono::floor<std::chrono::seconds>(now);
    if (second != second_) {
        const auto local = QDateTime::fromSecsSinceEpoch(second.time_since_epoch().count());
        localSecond_ = FromQt(local.date(), local.time());
        second_ = second;
    }
    return localSecond_ + (now - second);
}

}  // namespace platform::qt
