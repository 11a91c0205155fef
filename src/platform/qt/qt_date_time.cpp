#include "platform/qt/qt_date_time.h"

namespace platform::qt {
namespace {

QDate QtDayZero()
{
    return {1899, 12, 30};
}

}  // namespace

QDate DateOf(DateTime moment)
{
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    return QtDayZero().addDays((day - DayZero()).count());
}

QTime TimeOf(DateTime moment)
{
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    return QTime::fromMSecsSinceStartOfDay(static_cast<int>((moment - day).count()));
}

DateTime FromQt(QDate date, QTime time)
{
    return DayZero() + std::chrono::days(QtDayZero().daysTo(date)) +
           std::chrono::milliseconds(time.msecsSinceStartOfDay());
}

}  // namespace platform::qt
