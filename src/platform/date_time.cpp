#include "platform/date_time.h"

#include <cmath>

#include "platform/conversions.h"

namespace platform {
namespace {

using std::chrono::milliseconds;

constexpr double kMillisecondsPerDay = 86'400'000.0;
constexpr double kMostDays = 4'000'000.0;  // more than lie between the years 100 and 9999

DateTime Checked(DateTime moment)
{
    using namespace std::chrono;
    const auto year = year_month_day{floor<days>(moment)}.year();
    if (year < std::chrono::year{100} || year > std::chrono::year{9999})
        throw Overflow("the year", static_cast<int>(year), 100, 9999);
    return moment;
}

milliseconds Days(double days)
{
    if (!(std::abs(days) <= kMostDays))
        throw Overflow("the number of days", days, -kMostDays, kMostDays);
    return milliseconds{std::llround(days * kMillisecondsPerDay)};
}

}  // namespace

std::chrono::local_days DayZero()
{
    using namespace std::chrono;
    return local_days{year{1899} / December / 30};
}

DateTime FromDayNumber(double dayNumber)
{
    const double day = std::trunc(dayNumber);
    const double timeOfDay = std::abs(dayNumber - day);
    return Checked(DayZero() + Days(day) + Days(timeOfDay));
}

DateTime MinusDays(DateTime moment, double days)
{
    return Checked(moment - Days(days));
}

}  // namespace platform
