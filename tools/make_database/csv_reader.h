#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <streambuf>
#include <string>
#include <vector>

namespace tools {

struct CsvField {
    std::string text;

    /// An empty field in quotes is an empty text, one without is no value.
    bool quoted = false;

    bool operator==(const CsvField&) const = default;
};

struct CsvRecord {
    /// The line on which the record begins, counted from 1.
    std::size_t line = 0;
    std::vector<CsvField> fields;

    /// False where the text ends without an end of the record's line.
    bool ended = false;
};

/// Throws a Failure (kTypeMismatch) whose description begins with "line 12: ".
[[noreturn]] void FailAtLine(std::size_t line, const std::string& what);

/// Reads comma-separated records as RFC 4180 has them, one at a time. Lines end in CRLF or LF; inside quotes
/// both are part of the text, as is everything else but a quote, which is written twice. Lines with nothing
/// on them are left out, and so is a byte-order mark at the head of the text.
class CsvReader {
public:
    /// The stream must outlive the reader.
    explicit CsvReader(std::istream& text);

    /// Reads the next record; false at the end. Failure (FailAtLine): a quote that is not closed, or that
    /// stands inside a field without quotes; text behind a closing quote; a carriage return alone outside
    /// quotes.
    [[nodiscard]] bool Next(CsvRecord& record);

    /// How many bytes were read so far.
    [[nodiscard]] std::uint64_t Position() const { return position_; }

    [[nodiscard]] bool AtEnd() { return text_.sgetc() == std::char_traits<char>::eof(); }

private:
    CsvField ReadField();
    CsvField ReadQuoted();
    bool SkipLineEnd();
    bool SkipIf(char wanted);
    int Read();

    std::streambuf& text_;
    std::uint64_t position_ = 0;
    std::size_t line_ = 1;
};

}  // namespace tools
