#include "platform/qt/clock.h"

#include <QDateTime>

#include "platform/qt/qt_date_time.h"

namespace platform::qt {

DateTime Clock::Now() const
{
    const QDateTime now = QDateTime::currentDateTime();
    return FromQt(now.date(), now.time());
}

}  // namespace platform::qt
