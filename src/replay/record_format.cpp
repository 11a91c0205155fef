#include "replay/record_format.h"

#include <array>
#include <cstdio>
#include <string_view>
#include <variant>

#include "platform/ansi_code_page.h"
#include "platform/failure.h"

namespace trellivan {
namespace {

constexpr char kTimeBegins = '\x01';
constexpr char kTimeEnds = '\x02';

std::uint8_t CodeOf(char32_t character)
{
    if (const auto code = platform::AnsiCode(character))
        return *code;
    std::array<char, 16> name{};
    std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(character));
    throw platform::Failure(platform::failure::kOverflow, std::string("Overflow: the record's character ") +
                                                              name.data() + " fits in no byte");
}

}  // namespace

std::vector<std::uint8_t> StringToBytes(const std::string& text)
{
    if (text.empty())
        throw platform::Failure(platform::failure::kSubscriptOutOfRange,
                                "Subscript out of range: the record has no text");
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size());
    for (std::string_view rest = text; !rest.empty();)
        bytes.push_back(CodeOf(platform::TakeCharacter(rest)));
    return bytes;
}

std::string WithRecordedTime(const std::string& recordText, const platform::Value& recordedTime,
                             const platform::RegionalFormats& formats)
{
    const bool isNull = std::holds_alternative<platform::Null>(recordedTime);
    return recordText + kTimeBegins + (isNull ? "" : ToText(recordedTime, formats)) + kTimeEnds;
}

std::string LongTimeText(const platform::Value& value, const platform::RegionalFormats& formats)
{
    if (const auto* moment = std::get_if<platform::DateTime>(&value))
        return formats.LongTime(*moment);
    const std::string text = ToText(value, formats);
    if (std::holds_alternative<std::string>(value)) {
        const auto moment = formats.DateOrTime(text);
        return moment ? formats.LongTime(*moment) : text;
    }
    const auto days = formats.Number(text);
    return days ? formats.LongTime(platform::FromDayNumber(*days)) : text;
}

}  // namespace trellivan
