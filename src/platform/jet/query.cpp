#include "platform/jet/query.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <vector>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace platform::jet {
namespace {

constexpr std::size_t kTable = 3;
constexpr std::size_t kColumn = 6;
constexpr std::array<const char*, 7> kWords = {"select", "*", "from", nullptr, "order", "by", nullptr};

bool IsName(const std::string& word)
{
    const auto allowed = [](char c) {
        return c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    };
    return std::ranges::all_of(word, allowed);
}

}  // namespace

Query ParseQuery(const std::string& text)
{
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    const bool matches = std::ranges::equal(words, kWords, [](const std::string& word, const char* expected) {
        return expected == nullptr ? IsName(word) : LowerCase(word) == expected;
    });
    if (!matches)
        throw Failure(failure::kInvalidCall, "Not a query that can be run: " + text);
    return {words[kTable], words[kColumn]};
}

}  // namespace platform::jet
