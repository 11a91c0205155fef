#include "fakes/clock_and_formats.h"

#include <time.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace platform::fakes {
namespace {

std::tm PartsOf(DateTime moment)
{
    const std::time_t second = std::chrono::floor<std::chrono::seconds>(moment).time_since_epoch().count();
    std::tm parts{};
    ::gmtime_r(&second, &parts);
    return parts;
}

std::string Formatted(const char* format, int first, int second, int third)
{
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, first, second, third);
    return buffer.data();
}

}  // namespace

std::string PlainFormats::LongTime(DateTime moment) const
{
    const std::tm parts = PartsOf(moment);
    return Formatted("%02d:%02d:%02d", parts.tm_hour, parts.tm_min, parts.tm_sec);
}

std::string PlainFormats::ShortDate(DateTime moment) const
{
    const std::tm parts = PartsOf(moment);
    return Formatted("%04d-%02d-%02d", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
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
    const std::string whole(text);
    for (const char* form : {"%Y-%m-%d %H:%M:%S", "%Y-%m-%d", "%H:%M:%S"}) {
        std::tm parts = PartsOf(DayZero());
        const char* const end = ::strptime(whole.c_str(), form, &parts);
        if (end == nullptr || *end != '\0')
            continue;
        const int day = parts.tm_mday;
        const std::chrono::seconds moment(::timegm(&parts));
        if (parts.tm_mday == day)  // there is such a day
            return DateTime(moment);
    }
    return std::nullopt;
}

}  // namespace platform::fakes
