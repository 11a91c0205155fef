#include "command_line/numbers.h"

#include <charconv>
#include <string>

namespace tools {
namespace {

template <class Number>
bool IsFrom(const std::string& text, Number lowest, Number highest)
{
    Number number{};
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = read.ec == std::errc() && read.ptr == text.data() + text.size();
    return isNumber && number >= lowest && number <= highest;
}

}  // namespace

CLI::Validator NumberIn(double lowest, double highest)
{
    const auto problem = [lowest, highest](const std::string& text) {
        return IsFrom(text, lowest, highest) ? "" : text + " is no number that makes sense here";
    };
    return {problem, ""};
}

CLI::Validator WholeNumberIn(std::int64_t lowest, std::int64_t highest)
{
    const auto problem = [lowest, highest](const std::string& text) {
        const std::string range = std::to_string(lowest) + " to " + std::to_string(highest);
        return IsFrom(text, lowest, highest) ? "" : text + " is no whole number from " + range;
    };
    return {problem, ""};
}

}  // namespace tools
