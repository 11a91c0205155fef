#include "platform/conversions.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace platform {
namespace {

std::string Mapped(std::string_view text, char first, char last, int shift)
{
    std::string result(text);
    std::ranges::transform(result, result.begin(), [=](char letter) {
        return letter >= first && letter <= last ? static_cast<char>(letter + shift) : letter;
    });
    return result;
}

/// As people write numbers: without an exponent up to 15 digits.
std::string Digits(double number)
{
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), number, std::chars_format::general, 15).ptr;
    return {buffer.begin(), end};
}

}  // namespace

Failure Overflow(std::string_view what, double number, double lowest, double highest)
{
    return {failure::kOverflow, "Overflow: " + std::string(what) + " " + Digits(number) + " is not between " +
                                    Digits(lowest) + " and " + Digits(highest)};
}

double ToNumber(std::string_view text, const RegionalFormats& formats, std::string_view what)
{
    if (const auto number = formats.Number(text))
        return *number;
    throw Failure(failure::kTypeMismatch,
                  "Type mismatch: " + std::string(what) + " \"" + std::string(text) + "\" is not a number");
}

std::int32_t ToLong(std::string_view text, const RegionalFormats& formats)
{
    constexpr const char* kWhat = "the port";
    return ToInteger<std::int32_t>(ToNumber(text, formats, kWhat), kWhat);
}

std::string UpperCase(std::string_view text)
{
    return Mapped(text, 'a', 'z', 'A' - 'a');
}

std::string LowerCase(std::string_view text)
{
    return Mapped(text, 'A', 'Z', 'a' - 'A');
}

}  // namespace platform
