#include "config/ini_value.h"

#include <cmath>
#include <limits>

#include "app/mod_globals.h"
#include "platform/conversions.h"
#include "platform/failure.h"

namespace trellivan {
namespace {

constexpr std::int32_t kLowestKind = 2;
constexpr std::int32_t kHighestKind = 11;

template <class Integer>
std::optional<IniValue> WholeNumber(double number)
{
    if (number < std::numeric_limits<Integer>::min() || number > std::numeric_limits<Integer>::max())
        return std::nullopt;
    return platform::ToInteger<Integer>(number);
}

float Single(double number)
{
    constexpr double kLargest = std::numeric_limits<float>::max();
    if (std::abs(number) > kLargest)
        throw platform::Overflow("the number", number, -kLargest, kLargest);
    return static_cast<float>(number);
}

std::optional<IniValue> NumberOfKind(double number, std::int32_t valueKind)
{
    switch (valueKind) {
        case value_kind::kInteger:
            return WholeNumber<std::int16_t>(number);
        case value_kind::kLong:
            return WholeNumber<std::int32_t>(number);
        case value_kind::kSingle:
            return Single(number);
        case value_kind::kDouble:
            return number;
        case value_kind::kBoolean:
            return number != 0;
        default:
            return std::nullopt;
    }
}

std::optional<IniValue> BooleanWord(const std::string& text)
{
    const std::string word = platform::LowerCase(text);
    if (word != "true" && word != "false")
        return std::nullopt;
    return word == "true";
}

}  // namespace

std::optional<IniValue> ConvertIniText(const std::string& text, std::int32_t valueKind,
                                       const platform::RegionalFormats& formats)
{
    if (valueKind == value_kind::kText)
        return text;
    if (valueKind == value_kind::kDate)
        return formats.DateOrTime(text);
    if (const auto number = formats.Number(text))
        return NumberOfKind(*number, valueKind);
    if (valueKind == value_kind::kBoolean)
        return BooleanWord(text);
    return std::nullopt;
}

bool modGlobals::GetINIValue(const std::string& file, const std::string& section, const std::string& key,
                             IniValue& value, std::int32_t valueKind, std::int32_t length)  // abandon
{
    try {
        if (!files_.FileExists(file))
            return false;
        if (length < 0)
            throw platform::Failure(platform::failure::kInvalidCall,
                                    "A buffer cannot have a negative length");
        const std::string text =
            profile_.GetPrivateProfileStringA(section, key, static_cast<std::size_t>(length), file);
        if (text.empty() || valueKind < kLowestKind || valueKind > kHighestKind)
            return false;
        const auto converted = ConvertIniText(text, valueKind, formats_);
        if (converted)
            value = *converted;
        return converted.has_value();
    } catch (...) {
        WriteErrorLog(platform::CurrentFailure(), "modGlobals.GetINIValue(" + file + ", " + section + ", " +
                                                      key + ",, " + std::to_string(valueKind) + ", " +
                                                      std::to_string(length) + ")");
        return false;
    }
}

std::string modGlobals::ReadINIText(const std::string& section, const std::string& key)
{
    IniValue text = std::string();
    GetINIValue(ConfigFilePath_, section, key, text, value_kind::kText, kValueLength);
    return std::get<std::string>(text);
}

void modGlobals::WriteINIValues(const std::vector<platform::ProfileEntry>& entries)
{
    profile_.WritePrivateProfileStringA(entries, ConfigFilePath_);
}

}  // namespace trellivan
