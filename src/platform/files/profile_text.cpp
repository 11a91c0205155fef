#include "platform/files/profile_text.h"

#include <algorithm>
#include <optional>

#include "platform/ansi_code_page.h"
#include "platform/conversions.h"

namespace platform::files {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kCommentMarks = ";#";
constexpr std::string_view kDefaultLineEnd = "\r\n";

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

/// An empty result points behind the blanks, so that a value put there follows them.
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
    return SameName(ProfileContent::Decoded(Trimmed(bytes)), name);
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
    while (!text.empty()) {
        const Line line = TakeLine(text);
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

void AddSection(ProfileContent& content, const std::string& section, const std::string& line,
                const std::string& lineEnd)
{
    const std::string_view text = content.Text();
    const bool lastLineEnds = text.empty() || text.ends_with('\n');
    const std::string added = '[' + section + ']' + lineEnd + line;
    content.Replace(text.size(), 0, lastLineEnds ? added + lineEnd : lineEnd + added);
}

}  // namespace

std::string FindProfileValue(const ProfileContent& content, std::string_view section, std::string_view key,
                             std::size_t limit)
{
    const Place place = Locate(content.Text(), section, key);
    if (!place.value)
        return {};
    const std::string value = ProfileContent::Decoded(Unquoted(*place.value));
    std::string_view rest = value;
    for (std::size_t i = 0; i < limit && !rest.empty(); ++i)
        static_cast<void>(TakeCharacter(rest));
    return value.substr(0, value.size() - rest.size());
}

void SetProfileEntry(ProfileContent& content, const ProfileEntry& entry)
{
    const std::string_view text = content.Text();
    const Place place = Locate(text, entry.section, entry.key);
    const std::string value = AsOneLine(entry.value);
    const std::string bytes = QuotedIfNeeded(content.Encoded(value));
    const std::string line = content.Encoded(entry.key) + '=' + bytes;
    const std::string lineEnd(place.lineEnd);
    if (place.value) {
        if (ProfileContent::Decoded(Unquoted(*place.value)) != value)
            content.Replace(OffsetIn(text, *place.value), place.value->size(), bytes);
    } else if (place.lastOfSection) {
        const std::string_view before = place.lastOfSection->content;
        content.Replace(OffsetIn(text, before) + before.size(), 0, lineEnd + line);
    } else {
        AddSection(content, content.Encoded(entry.section), line, lineEnd);
    }
}

}  // namespace platform::files
