#include "platform/jet/exact_number.h"

#include <algorithm>

namespace platform::jet {
namespace {

/// Divides in place and returns the remainder.
std::uint32_t DivideByTen(Magnitude& magnitude)
{
    std::uint64_t remainder = 0;
    for (std::uint32_t& part : magnitude) {
        const std::uint64_t dividend = remainder << 32 | part;
        part = static_cast<std::uint32_t>(dividend / 10);
        remainder = dividend % 10;
    }
    return static_cast<std::uint32_t>(remainder);
}

std::string Digits(Magnitude magnitude)
{
    std::string digits;
    while (magnitude != Magnitude{})
        digits.push_back(static_cast<char>('0' + DivideByTen(magnitude)));
    std::ranges::reverse(digits);
    return digits;
}

}  // namespace

ExactNumber ToExactNumber(bool negative, Magnitude magnitude, std::size_t scale)
{
    std::string digits = Digits(magnitude);
    if (digits.empty())
        return {"0"};
    if (digits.size() <= scale)
        digits.insert(0, scale + 1 - digits.size(), '0');
    if (scale > 0) {
        digits.insert(digits.size() - scale, 1, '.');
        digits.erase(digits.find_last_not_of('0') + 1);
        if (digits.back() == '.')
            digits.pop_back();
    }
    return {negative ? "-" + digits : digits};
}

}  // namespace platform::jet
