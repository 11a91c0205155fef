#include "platform/files/profile_content.h"

#include <algorithm>
#include <utility>

#include "platform/ansi_code_page.h"

namespace platform::files {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16LittleEndianMark = "\xFF\xFE";
constexpr std::string_view kUtf16BigEndianMark = "\xFE\xFF";

constexpr std::size_t kUnitSize = 2;
constexpr char32_t kFirstOfTwoUnits = 0x10000;
constexpr char32_t kFirstHigh = 0xD800;
constexpr char32_t kFirstLow = 0xDC00;
constexpr char32_t kPastLow = 0xE000;

char32_t UnitAt(std::string_view bytes, std::size_t at, bool isBigEndian)
{
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return static_cast<char32_t>(isBigEndian ? first << 8 | second : second << 8 | first);
}

void AppendUnit(std::string& bytes, char32_t unit, bool isBigEndian)
{
    const auto high = static_cast<char>(unit >> 8);
    const auto low = static_cast<char>(unit & 0xFF);
    bytes += isBigEndian ? high : low;
    bytes += isBigEndian ? low : high;
}

/// Half of a pair that stands alone becomes U+FFFD, which is one unit as well; an odd last byte is left out.
std::string FromUtf16(std::string_view bytes, bool isBigEndian)
{
    std::string text;
    for (std::size_t at = 0; at + kUnitSize <= bytes.size(); at += kUnitSize) {
        char32_t character = UnitAt(bytes, at, isBigEndian);
        const std::size_t next = at + kUnitSize;
        if (character >= kFirstHigh && character < kFirstLow && next + kUnitSize <= bytes.size()) {
            const char32_t low = UnitAt(bytes, next, isBigEndian);
            if (low >= kFirstLow && low < kPastLow) {
                character = kFirstOfTwoUnits + ((character - kFirstHigh) << 10) + (low - kFirstLow);
                at = next;
            }
        }
        AppendCharacter(text, character);
    }
    return text;
}

std::string ToUtf16(std::string_view utf8, bool isBigEndian)
{
    std::string bytes;
    while (!utf8.empty()) {
        const char32_t character = TakeCharacter(utf8);
        if (character < kFirstOfTwoUnits) {
            AppendUnit(bytes, character, isBigEndian);
            continue;
        }
        AppendUnit(bytes, kFirstHigh + ((character - kFirstOfTwoUnits) >> 10), isBigEndian);
        AppendUnit(bytes, kFirstLow + ((character - kFirstOfTwoUnits) & 0x3FF), isBigEndian);
    }
    return bytes;
}

std::size_t SizeInUtf16(std::string_view utf8)
{
    std::size_t size = 0;
    while (!utf8.empty())
        size += TakeCharacter(utf8) < kFirstOfTwoUnits ? kUnitSize : 2 * kUnitSize;
    return size;
}

bool IsAscii(char byte)
{
    return static_cast<signed char>(byte) >= 0;
}

bool HasLineInUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        if (!std::ranges::all_of(line, IsAscii) && IsUtf8(line))
            return true;
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return false;
}

}  // namespace

ProfileContent::ProfileContent(std::string bytes) : bytes_(std::move(bytes))
{
    ReadEncoding();
}

std::string_view ProfileContent::Text() const
{
    return IsUtf16() ? std::string_view(utf16Text_) : std::string_view(bytes_).substr(markSize_);
}

std::string ProfileContent::Decoded(std::string_view piece)
{
    return IsUtf8(piece) ? std::string(piece) : FromAnsi(piece);
}

std::string ProfileContent::Encoded(const std::string& utf8) const
{
    if (encoding_ != Encoding::kAnsi)
        return utf8;
    std::string ansi = ToAnsi(utf8);
    return Decoded(ansi) == utf8 ? ansi : utf8;
}

void ProfileContent::Replace(std::size_t begin, std::size_t size, std::string_view encoded)
{
    if (IsUtf16()) {
        const std::string_view text = utf16Text_;
        const std::size_t sizeBefore = SizeInUtf16(text.substr(0, begin));
        bytes_.replace(markSize_ + sizeBefore, SizeInUtf16(text.substr(begin, size)),
                       ToUtf16(encoded, encoding_ == Encoding::kUtf16BigEndian));
    } else {
        bytes_.replace(markSize_ + begin, size, encoded);
    }
    ReadEncoding();
}

bool ProfileContent::IsUtf16() const
{
    return encoding_ == Encoding::kUtf16LittleEndian || encoding_ == Encoding::kUtf16BigEndian;
}

void ProfileContent::ReadEncoding()
{
    const std::string_view bytes = bytes_;
    if (bytes.starts_with(kUtf16LittleEndianMark) || bytes.starts_with(kUtf16BigEndianMark)) {
        const bool isBigEndian = bytes.starts_with(kUtf16BigEndianMark);
        encoding_ = isBigEndian ? Encoding::kUtf16BigEndian : Encoding::kUtf16LittleEndian;
        markSize_ = kUtf16LittleEndianMark.size();
        utf16Text_ = FromUtf16(bytes.substr(markSize_), isBigEndian);
        return;
    }
    markSize_ = bytes.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0;
    encoding_ = markSize_ > 0 || HasLineInUtf8(bytes) ? Encoding::kUtf8 : Encoding::kAnsi;
}

}  // namespace platform::files
