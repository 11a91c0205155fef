#include "platform/memory/clock_and_formats.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace platform::memory {
namespace {

using namespace std::chrono;

template <class... Numbers>
std::string Formatted(const char* format, Numbers... numbers)
{
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, numbers...);
    return buffer.data();
}

std::optional<local_days> DayOf(const std::string& text)
{
    int y = 0;
    unsigned m = 0;
    unsigned d = 0;
    int end = 0;
    if (std::sscanf(text.c_str(), "%4d-%2u-%2u%n", &y, &m, &d, &end) != 3 ||
        static_cast<std::size_t>(end) != text.size())
        return std::nullopt;
    const year_month_day date{year{y}, month{m}, day{d}};
    return date.ok() ? std::optional(local_days{date}) : std::nullopt;
}

std::optional<seconds> TimeOf(const std::string& text)
{
    unsigned h = 0;
    unsigned m = 0;
    unsigned s = 0;
    int end = 0;
    if (std::sscanf(text.c_str(), "%2u:%2u:%2u%n", &h, &m, &s, &end) != 3 ||
        static_cast<std::size_t>(end) != text.size() || h > 23 || m > 59 || s > 59)
        return std::nullopt;
    return hours{h} + minutes{m} + seconds{s};
}

}  // namespace

std::string PlainFormats::LongTime(DateTime moment) const
{
    const hh_mm_ss time{floor<seconds>(moment - floor<days>(moment))};
    return Formatted("%02d:%02d:%02d", static_cast<int>(time.hours().count()),
                     static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
}

std::string PlainFormats::ShortDate(DateTime moment) const
{
    const year_month_day date{floor<days>(moment)};
    return Formatted("%04d-%02u-%02u", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

std::optional<double> PlainFormats::Number(std::string_view text) const
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return std::nullopt;
    text = text.substr(first, text.find_last_not_of(' ') - first + 1);
    if (text.front() == '+')
        text.remove_prefix(1);
    double number = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), number);
    const bool whole = error == std::errc() && end == text.end() && std::isfinite(number);
    return whole ? std::optional(number) : std::nullopt;
}

std::optional<DateTime> PlainFormats::DateOrTime(std::string_view text) const
{
    const auto blank = text.find(' ');
    const std::string first(text.substr(0, blank));
    const auto day = DayOf(first);
    if (blank == std::string_view::npos) {
        const auto time = TimeOf(first);
        return day    ? std::optional<DateTime>(*day)
               : time ? std::optional<DateTime>(DayZero() + *time)
                      : std::nullopt;
    }
    const auto time = TimeOf(std::string(text.substr(blank + 1)));
    return day && time ? std::optional<DateTime>(*day + *time) : std::nullopt;
}

}  // namespace platform::memory
