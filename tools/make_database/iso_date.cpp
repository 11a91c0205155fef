#include "make_database/iso_date.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>

#include "platform/date_time.h"

namespace tools {
namespace {

constexpr std::string_view kDatePattern = "dddd-dd-dd";
constexpr std::array<std::string_view, 3> kTimePatterns = {"dd:dd", "dd:dd:dd", "dd:dd:dd.ddd"};
constexpr int kFirstYear = 100;
constexpr double kMillisecondsPerDay = 86'400'000.0;

/// Whether a text has a digit wherever the pattern has "d", and elsewhere the pattern's own character.
bool Matches(std::string_view text, std::string_view pattern)
{
    return std::ranges::equal(text, pattern, [](char character, char wanted) {
        return wanted == 'd' ? character >= '0' && character <= '9' : character == wanted;
    });
}

/// The number that these digits of a text form; 0 where the text ends before them.
int Digits(std::string_view text, std::size_t first, std::size_t count)
{
    int number = 0;
    if (first < text.size())
        std::from_chars(text.data() + first, text.data() + first + count, number);
    return number;
}

std::optional<double> ToDays(std::string_view text)
{
    using namespace std::chrono;
    if (!Matches(text, kDatePattern))
        return std::nullopt;
    const auto date = year{Digits(text, 0, 4)} / Digits(text, 5, 2) / Digits(text, 8, 2);
    if (!date.ok() || date.year() < year{kFirstYear})
        return std::nullopt;
    return static_cast<double>((local_days(date) - platform::DayZero()).count());
}

/// The time of day as a fraction of a day.
std::optional<double> ToFraction(std::string_view text)
{
    using namespace std::chrono;
    if (std::ranges::none_of(kTimePatterns, [&](auto pattern) { return Matches(text, pattern); }))
        return std::nullopt;
    const hours hour(Digits(text, 0, 2));
    const minutes minute(Digits(text, 3, 2));
    const seconds second(Digits(text, 6, 2));
    if (hour >= days{1} || minute >= hours{1} || second >= minutes{1})
        return std::nullopt;
    const milliseconds time = hour + minute + second + milliseconds(Digits(text, 9, 3));
    return static_cast<double>(time.count()) / kMillisecondsPerDay;
}

}  // namespace

std::optional<double> DayNumberOfIso(std::string_view text)
{
    if (text.size() < kDatePattern.size() || text[2] == ':')
        return ToFraction(text);
    const auto days = ToDays(text.substr(0, kDatePattern.size()));
    const std::string_view behind = text.substr(kDatePattern.size());
    if (!days || behind.empty())
        return days;
    const auto fraction = ToFraction(behind.substr(1));
    if (!fraction || (behind[0] != 'T' && behind[0] != ' '))
        return std::nullopt;
    return *days < 0 ? *days - *fraction : *days + *fraction;
}

}  // namespace tools
