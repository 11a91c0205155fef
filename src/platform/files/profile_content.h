#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform::files {

/// The bytes of a profile file, and the text in them. A file is
///
/// - in UTF-16 of either byte order, when it begins with the byte-order mark FF FE or FE FF;
/// - in UTF-8, when it begins with the mark EF BB BF or has a line in UTF-8 that is not all ASCII;
/// - else in code page 1252, with lines in UTF-8 where we have put characters that 1252 lacks.
///
/// Editing touches no byte outside the edited place, whatever these are.
class ProfileContent {
public:
    explicit ProfileContent(std::string bytes);

    [[nodiscard]] const std::string& Bytes() const { return bytes_; }

    /// The text without a byte-order mark, valid until the next change. A file in UTF-16 comes in UTF-8; any other as
    /// its own bytes, of which Decoded makes UTF-8 piece by piece.
    [[nodiscard]] std::string_view Text() const;

    /// A piece of Text(), such as a name or a value, as UTF-8: what is valid UTF-8 is taken as that, all else as code
    /// page 1252.
    [[nodiscard]] static std::string Decoded(std::string_view piece);

    /// Valid UTF-8 in the form in which it goes into Text(). In a file in code page 1252 a piece that would not be
    /// read back alike in that code page stays UTF-8.
    [[nodiscard]] std::string Encoded(const std::string& utf8) const;

    /// Puts an encoded piece in the place of `size` bytes of Text() from `begin` on, which begins and ends between two
    /// characters.
    void Replace(std::size_t begin, std::size_t size, std::string_view encoded);

private:
    enum class Encoding { kAnsi, kUtf8, kUtf16LittleEndian, kUtf16BigEndian };

    [[nodiscard]] bool IsUtf16() const;
    void ReadEncoding();

    std::string bytes_;
    Encoding encoding_ = Encoding::kAnsi;
    std::size_t markSize_ = 0;
    std::string utf16Text_;  // the text of a file in UTF-16, as UTF-8
};

}  // namespace platform::files
