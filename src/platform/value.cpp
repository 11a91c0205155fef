#include "platform/value.h"

#include <array>
#include <charconv>

#include "platform/failure.h"
#include "platform/regional_formats.h"

namespace platform {
namespace {

std::string WithRegionalSign(std::string digits, const RegionalFormats& formats)
{
    if (const auto point = digits.find('.'); point != std::string::npos)
        digits.replace(point, 1, formats.DecimalSign());
    return digits;
}

template <class Real>
std::string RealText(Real number, int significantDigits, const RegionalFormats& formats)
{
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), number == Real{0} ? Real{0} : number,
                                   std::chars_format::general, significantDigits);
    std::string digits(buffer.begin(), end.ptr);
    if (const auto exponent = digits.find('e'); exponent != std::string::npos)
        digits[exponent] = 'E';
    return WithRegionalSign(digits, formats);
}

class TextOf {
public:
    explicit TextOf(const RegionalFormats& formats) : formats_(formats) {}

    std::string operator()(Null) const { throw Failure(failure::kInvalidUseOfNull, "Invalid use of Null"); }
    std::string operator()(bool value) const { return value ? "True" : "False"; }
    std::string operator()(std::int32_t value) const { return std::to_string(value); }
    std::string operator()(float value) const { return RealText(value, 7, formats_); }
    std::string operator()(double value) const { return RealText(value, 15, formats_); }
    std::string operator()(const ExactNumber& value) const
    {
        return WithRegionalSign(value.digits, formats_);
    }
    std::string operator()(DateTime value) const { return GeneralDate(value, formats_); }
    std::string operator()(const Guid& value) const { return value.text; }
    std::string operator()(const std::string& value) const { return value; }
    std::string operator()(const Binary&) const
    {
        throw Failure(failure::kTypeMismatch, "Type mismatch: a binary value has no text");
    }

private:
    const RegionalFormats& formats_;
};

}  // namespace

std::string ToText(const Value& value, const RegionalFormats& formats)
{
    return std::visit(TextOf(formats), value);
}

}  // namespace platform
