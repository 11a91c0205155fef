#include "platform/jet/text.h"

#include <utility>

#include "platform/ansi_code_page.h"

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

    [[nodiscard]] std::string TakeText()
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

std::string Decompress(ByteView bytes)
{
    Utf16Reader reader;
    reader.Reserve(bytes.Size());
    bool compressed = true;
    for (std::size_t at = 0; at < bytes.Size();) {
        if (bytes.U8(at) == 0) {
            compressed = !compressed;
            ++at;
        } else if (compressed) {
            const std::string_view ascii = LeadingAscii(bytes.AsText().substr(at));
            reader.AddAscii(ascii);
            at += ascii.size();
            if (at < bytes.Size() && bytes.U8(at) != 0)
                reader.Add(bytes.U8(at++));
        } else {
            reader.Add(bytes.U16(at));
            at += 2;
        }
    }
    return reader.TakeText();
}

}  // namespace

std::string FromUtf16(ByteView bytes)
{
    Utf16Reader reader;
    reader.Reserve(bytes.Size() / 2);
    for (std::size_t at = 0; at < bytes.Size(); at += 2)
        reader.Add(bytes.U16(at));
    return reader.TakeText();
}

std::string DecodeText(ByteView bytes, Format format)
{
    if (format == Format::kJet3)
        return FromAnsi(bytes.AsText());
    if (bytes.AsText().starts_with(kCompressionMark))
        return Decompress(bytes.From(kCompressionMark.size()));
    return FromUtf16(bytes);
}

}  // namespace platform::jet
