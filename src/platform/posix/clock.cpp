#include "platform/posix/clock.h"

#include <ctime>

namespace platform::posix {
namespace {

DateTime LocalTime(std::chrono::sys_seconds moment)
{
    ::tzset();
    const std::time_t seconds = moment.time_since_epoch().count();
    std::tm local{};
    ::localtime_r(&seconds, &local);
    // As if the local time were that of Greenwich: then the calendar's arithmetic turns it into a moment.
    const std::time_t shown = ::timegm(&local);
    return DateTime(std::chrono::seconds(shown));
}

}  // namespace

DateTime Clock::Now() const
{
    const auto now = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    const auto second = std::chrono::floor<std::chrono::seconds>(now);
    if (second != second_) {
        localSecond_ = LocalTime(second);
        second_ = second;
    }
    return localSecond_ + (now - second);
}

}  // namespace platform::posix
