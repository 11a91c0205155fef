#include "make_database/iso_date.h"

#include <chrono>
#include <cstddef>

#include "platform/date_time.h"

namespace tools {
namespace {

using std::chrono::milliseconds;

constexpr std::string_view kDigits = "0123456789";
constexpr int kFirstYear = 100;
constexpr double kMillisecondsPerDay = 86'400'000.0;

/// Takes pieces off the front of a text; nothing where the piece is not there.
class Pieces {
public:
    explicit Pieces(std::string_view text) : rest_(text) {}

    [[nodiscard]] bool AtEnd() const { return rest_.empty(); }

    bool Take(char wanted)
    {
        const bool there = rest_.starts_with(wanted);
        rest_.remove_prefix(there ? 1 : 0);
        return there;
    }

    /// A number of exactly so many digits.
    std::optional<int> Number(std::size_t digits)
    {
        if (rest_.size() < digits || rest_.substr(0, digits).find_first_not_of(kDigits) != rest_.npos)
            return std::nullopt;
        int number = 0;
        for (const char digit : rest_.substr(0, digits))
            number = 10 * number + (digit - '0');
        rest_.remove_prefix(digits);
        return number;
    }

private:
    std::string_view rest_;
};

std::optional<int> NumberAfter(char mark, std::size_t digits, Pieces& pieces)
{
    return pieces.Take(mark) ? pieces.Number(digits) : std::nullopt;
}

std::optional<std::chrono::local_days> TakeDate(Pieces& pieces)
{
    using namespace std::chrono;
    const auto yearNumber = pieces.Number(4);
    const auto monthNumber = NumberAfter('-', 2, pieces);
    const auto dayNumber = NumberAfter('-', 2, pieces);
    if (!yearNumber || !monthNumber || !dayNumber || *yearNumber < kFirstYear)
        return std::nullopt;
    const auto date = year{*yearNumber} / *monthNumber / *dayNumber;
    return date.ok() ? std::optional(local_days(date)) : std::nullopt;
}

/// One to three digits behind the seconds.
std::optional<milliseconds> TakeFraction(Pieces& pieces)
{
    int count = 0;
    milliseconds fraction{0};
    for (milliseconds unit{100}; unit.count() > 0; unit /= 10) {
        const auto digit = pieces.Number(1);
        if (!digit)
            break;
        fraction += *digit * unit;
        ++count;
    }
    return count > 0 ? std::optional(fraction) : std::nullopt;
}

std::optional<milliseconds> TakeTime(Pieces& pieces)
{
    using namespace std::chrono;
    const auto hour = pieces.Number(2);
    const auto minute = NumberAfter(':', 2, pieces);
    if (!hour || !minute || *hour > 23 || *minute > 59)
        return std::nullopt;
    milliseconds time = hours(*hour) + minutes(*minute);
    if (pieces.AtEnd())
        return time;
    const auto second = NumberAfter(':', 2, pieces);
    if (!second || *second > 59)
        return std::nullopt;
    const auto fraction = pieces.Take('.') ? TakeFraction(pieces) : milliseconds{0};
    return fraction ? std::optional(time + seconds(*second) + *fraction) : std::nullopt;
}

}  // namespace

std::optional<double> DayNumberOfIso(std::string_view text)
{
    constexpr std::size_t kMonthMark = 4;
    Pieces pieces(text);
    std::chrono::days day{0};
    bool hasTime = true;
    if (text.size() > kMonthMark && text[kMonthMark] == '-') {
        const auto date = TakeDate(pieces);
        if (!date)
            return std::nullopt;
        day = *date - platform::DayZero();
        hasTime = pieces.Take('T') || pieces.Take(' ');
    }
    const auto time = hasTime ? TakeTime(pieces) : milliseconds{0};
    if (!time || !pieces.AtEnd())
        return std::nullopt;
    const double fraction = static_cast<double>(time->count()) / kMillisecondsPerDay;
    const auto days = static_cast<double>(day.count());
    return days < 0 ? days - fraction : days + fraction;
}

}  // namespace tools
