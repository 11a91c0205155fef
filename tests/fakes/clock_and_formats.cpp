#include "fakes/clock_and_formats.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace platform::fakes {
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
    int yearNumber = 0;
    unsigned monthNumber = 0;
    unsigned dayNumber = 0;
    int end = 0;
    if (std::sscanf(text.c_str(), "%4d-%2u-%2u%n", &yearNumber, &monthNumber, &dayNumber, &end) != 3 ||
        static_cast<std::size_t>(end) != text.size())
        return std::nullopt;
    const year_month_day date{year{yearNumber}, month{monthNumber}, day{dayNumber}};
    return date.ok() ? std::optional(local_days{date}) : std::nullopt;
}

std::optional<seconds> TimeOf(const std::string& text)
{
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0;
    int end = 0;
    if (std::sscanf(text.c_str(), "%2u:%2u:%2u%n", &hour, &minute, &second, &end) != 3 ||
        static_cast<std::size_t>(end) != text.size() || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    return hours{hour} + minutes{minute} + seconds{second};
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
    const auto time = TimeOf(blank == std::string_view::npos ? first : std::string(text.substr(blank + 1)));
    if (day && time)
        return *day + *time;
    if (blank != std::string_view::npos)
        return std::nullopt;
    if (day)
        return *day;
    return time ? std::optional<DateTime>(DayZero() + *time) : std::nullopt;
}

}  // namespace platform::fakes
