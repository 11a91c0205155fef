#include "platform/jet/text.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/ansi_code_page.h"

/// Texts
///
/// Jet 3 stores one byte a character. The header names the code page; code page 1252 is taken here whatever
/// it is. A text that goes out on the wire in 1252 then has the bytes that were stored.
///
/// Jet 4 stores UTF-16 or, after FF FE, a compressed text: one byte a character (Latin-1) until a zero byte
/// changes to UTF-16 and the next one back. A unit of UTF-16 whose first byte is zero cannot stand in it. In
/// Jet 3 the bytes FF FE are two characters.
namespace platform::jet {
namespace {

constexpr std::string_view kCompressionMark = "\xFF\xFE";

/// Collects UTF-16 units as UTF-8.
class Utf16Reader {
public:
    void Add(char32_t unit)
    {
        if (high_ != 0 && unit >= 0xDC00 && unit <= 0xDFFF) {
            AppendCharacter(text_, 0x10000 + ((high_ - 0xD800) << 10) + (unit - 0xDC00));
            high_ = 0;
            return;
        }
        FlushHigh();
        if (unit >= 0xD800 && unit <= 0xDBFF)
            high_ = unit;
        else
            AppendCharacter(text_, unit);
    }

    void AddAscii(std::string_view characters)
    {
        FlushHigh();
        text_ += characters;
    }

    [[nodiscard]] std::string ReleaseText()
    {
        FlushHigh();
        return std::move(text_);
    }

    void Reserve(std::size_t characters) { text_.reserve(characters); }

private:
    void FlushHigh()
    {
        if (high_ != 0)
            AppendCharacter(text_, high_);
        high_ = 0;
    }

    std::string text_;
    char32_t high_ = 0;
};

/// Units that are still wanted; without a limit a text must end with a whole one.
class Limit {
public:
    Limit() = default;
    explicit Limit(std::size_t units) : left_(units), isBeginning_(true) {}

    [[nodiscard]] std::size_t Left() const { return left_; }
    void Use(std::size_t units) { left_ -= units; }

    /// Whether the next unit of two bytes is to be read; it may be cut in a beginning only.
    [[nodiscard]] bool Wants(ByteView bytes, std::size_t at) const
    {
        const bool isCut = at + 1 == bytes.Size() && isBeginning_;
        return left_ > 0 && at < bytes.Size() && !isCut;
    }

private:
    std::size_t left_ = std::numeric_limits<std::size_t>::max();
    bool isBeginning_ = false;
};

std::string Decompress(ByteView bytes, Limit limit)
{
    Utf16Reader reader;
    reader.Reserve(std::min(bytes.Size(), limit.Left()));
    bool compressed = true;
    for (std::size_t at = 0; limit.Left() > 0 && at < bytes.Size();) {
        if (bytes.U8(at) == 0) {
            compressed = !compressed;
            ++at;
        } else if (compressed) {
            const std::string_view ascii = LeadingAscii(bytes.AsText().substr(at, limit.Left()));
            reader.AddAscii(ascii);
            limit.Use(ascii.size());
            at += ascii.size();
            if (at < bytes.Size() && bytes.U8(at) != 0 && limit.Left() > 0) {
                reader.Add(bytes.U8(at++));
                limit.Use(1);
            }
        } else if (limit.Wants(bytes, at)) {
            reader.Add(bytes.U16(at));
            limit.Use(1);
            at += 2;
        } else {
            break;
        }
    }
    return reader.ReleaseText();
}

std::string FromUtf16(ByteView bytes, Limit limit)
{
    Utf16Reader reader;
    reader.Reserve(std::min(bytes.Size() / 2, limit.Left()));
    for (std::size_t at = 0; limit.Wants(bytes, at); at += 2) {
        reader.Add(bytes.U16(at));
        limit.Use(1);
    }
    return reader.ReleaseText();
}

std::string Decode(ByteView bytes, Format format, Limit limit)
{
    if (format == Format::kJet3)
        return FromAnsi(bytes.AsText().substr(0, limit.Left()));
    if (bytes.AsText().starts_with(kCompressionMark))
        return Decompress(bytes.From(kCompressionMark.size()), limit);
    return FromUtf16(bytes, limit);
}

}  // namespace

std::string FromUtf16(ByteView bytes)
{
    return FromUtf16(bytes, Limit());
}

std::string DecodeText(ByteView bytes, Format format)
{
    return Decode(bytes, format, Limit());
}

std::string DecodeTextBeginning(ByteView bytes, Format format, std::size_t mostCharacters)
{
    return Decode(bytes, format, Limit(mostCharacters));
}

}  // namespace platform::jet
