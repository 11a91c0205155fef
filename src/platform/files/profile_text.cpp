#include "platform/files/profile_text.h"

#include <algorithm>
#include <optional>

#include "platform/ansi_code_page.h"
#include "platform/names.h"

namespace platform::files {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kCommentMarks = ";#";
constexpr std::string_view kDefaultLineEnd = "\r\n";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf16BigEndianMark = "\xFE\xFF";

/// A line of a text, as views into it.
struct Line {
    std::string_view content;
    std::string_view lineEnd;
};

struct KeyAndValue {
    std::string_view key;
    std::string_view value;
};

/// Where a key's value stands in a text, or else behind which line the key has to go.
struct Place {
    std::optional<std::string_view> value;
    std::optional<Line> lastOfSection;
    std::string_view lineEnd = kDefaultLineEnd;
};

Line TakeLine(std::string_view& rest)
{
    const std::size_t feed = rest.find('\n');
    const std::size_t next = feed == std::string_view::npos ? rest.size() : feed + 1;
    std::size_t end = feed == std::string_view::npos ? rest.size() : feed;
    if (end < next && end > 0 && rest[end - 1] == '\r')
        --end;
    const Line line{rest.substr(0, end), rest.substr(end, next - end)};
    rest.remove_prefix(next);
    return line;
}

/// An empty result stands at the end of the bytes, so that what replaces it follows the blanks.
std::string_view Trimmed(std::string_view bytes)
{
    bytes.remove_prefix(std::min(bytes.find_first_not_of(kBlanks), bytes.size()));
    return bytes.substr(0, bytes.find_last_not_of(kBlanks) + 1);
}

std::string_view Unquoted(std::string_view bytes)
{
    const bool quoted =
        bytes.size() >= 2 && bytes.front() == bytes.back() && (bytes.front() == '"' || bytes.front() == '\'');
    return quoted ? bytes.substr(1, bytes.size() - 2) : bytes;
}

std::string Decoded(std::string_view bytes)
{
    return IsUtf8(bytes) ? std::string(bytes) : FromAnsi(bytes);
}

std::string Encoded(const std::string& text)
{
    std::string ansi = ToAnsi(text);
    return Decoded(ansi) == text ? ansi : text;
}

/// A value as one line of valid UTF-8.
std::string AsOneLine(std::string_view value)
{
    std::string line;
    while (!value.empty()) {
        if (value.starts_with("\r\n"))
            value.remove_prefix(1);
        const char32_t character = TakeCharacter(value);
        AppendCharacter(line, character == '\r' || character == '\n' ? U' ' : character);
    }
    return line;
}

std::string QuotedIfNeeded(const std::string& bytes)
{
    return Unquoted(Trimmed(bytes)) == bytes ? bytes : '"' + bytes + '"';
}

bool IsNamed(std::string_view bytes, std::string_view name)
{
    return SameName(Decoded(Trimmed(bytes)), name);
}

std::optional<std::string_view> SectionName(const Line& line)
{
    const std::string_view content = Trimmed(line.content);
    const std::size_t end = content.find(']');
    if (!content.starts_with('[') || end == std::string_view::npos)
        return std::nullopt;
    return content.substr(1, end - 1);
}

std::optional<KeyAndValue> Entry(const Line& line)
{
    const std::size_t sign = line.content.find('=');
    if (sign == std::string_view::npos)
        return std::nullopt;
    return KeyAndValue{line.content.substr(0, sign), Trimmed(line.content.substr(sign + 1))};
}

bool IsBlankOrComment(const Line& line)
{
    const std::string_view content = Trimmed(line.content);
    return content.empty() || kCommentMarks.find(content.front()) != std::string_view::npos;
}

Place Locate(std::string_view text, std::string_view section, std::string_view key)
{
    Place place;
    bool inSection = false;
    std::string_view rest = text.substr(text.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0);
    while (!rest.empty()) {
        const Line line = TakeLine(rest);
        if (!line.lineEnd.empty() && !place.lastOfSection)
            place.lineEnd = line.lineEnd;
        if (const auto name = SectionName(line))
            inSection = IsNamed(*name, section);
        if (!inSection || IsBlankOrComment(line))
            continue;
        const auto entry = Entry(line);
        if (entry && IsNamed(entry->key, key)) {
            place.value = entry->value;
            return place;
        }
        place.lastOfSection = line;
        if (!line.lineEnd.empty())
            place.lineEnd = line.lineEnd;
    }
    return place;
}

std::size_t OffsetIn(std::string_view text, std::string_view part)
{
    return static_cast<std::size_t>(part.data() - text.data());
}

void AddSection(std::string& text, const std::string& section, const std::string& line,
                const std::string& lineEnd)
{
    const bool lastLineEnds = text.empty() || text == kUtf8Mark || text.ends_with('\n');
    const std::string added = '[' + section + ']' + lineEnd + line;
    text += lastLineEnds ? added + lineEnd : lineEnd + added;
}

void SetEntry(std::string& text, const ProfileEntry& entry)
{
    const Place place = Locate(text, entry.section, entry.key);
    const std::string value = AsOneLine(entry.value);
    const std::string bytes = QuotedIfNeeded(Encoded(value));
    const std::string line = Encoded(entry.key) + '=' + bytes;
    const std::string lineEnd(place.lineEnd);
    if (place.value) {
        if (Decoded(Unquoted(*place.value)) != value)
            text.replace(OffsetIn(text, *place.value), place.value->size(), bytes);
    } else if (place.lastOfSection) {
        const std::string_view before = place.lastOfSection->content;
        text.insert(OffsetIn(text, before) + before.size(), lineEnd + line);
    } else {
        AddSection(text, Encoded(entry.section), line, lineEnd);
    }
}

}  // namespace

std::string FindProfileValue(std::string_view text, std::string_view section, std::string_view key,
                             std::size_t limit)
{
    const Place place = Locate(text, section, key);
    if (!place.value)
        return {};
    const std::string value = Decoded(Unquoted(*place.value));
    std::string_view rest = value;
    for (std::size_t i = 0; i < limit && !rest.empty(); ++i)
        static_cast<void>(TakeCharacter(rest));
    return value.substr(0, value.size() - rest.size());
}

std::string WithProfileEntry(std::string_view text, const ProfileEntry& entry)
{
    std::string result(text);
    if (!text.starts_with(kUtf16Mark) && !text.starts_with(kUtf16BigEndianMark))
        SetEntry(result, entry);
    return result;
}

}  // namespace platform::files
