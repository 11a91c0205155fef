#include "platform/conversions.h"

#include <algorithm>

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

}  // namespace

double ToNumber(std::string_view text, const RegionalFormats& formats)
{
    if (const auto number = formats.Number(text))
        return *number;
    throw Failure(failure::kTypeMismatch, "Type mismatch: \"" + std::string(text) + "\" is not a number");
}

std::int32_t ToLong(std::string_view text, const RegionalFormats& formats)
{
    return ToInteger<std::int32_t>(ToNumber(text, formats));
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
