#include "make_database/csv_reader.h"

#include "platform/failure.h"

namespace tools {
namespace {

constexpr int kEnd = std::char_traits<char>::eof();

}  // namespace

void FailAtLine(std::size_t line, const std::string& what)
{
    throw platform::Failure(platform::failure::kTypeMismatch, "line " + std::to_string(line) + ": " + what);
}

CsvReader::CsvReader(std::istream& text) : text_(*text.rdbuf())
{
    if (SkipIf('\xEF') && !(SkipIf('\xBB') && SkipIf('\xBF')))
        FailAtLine(line_, "the text is not valid UTF-8");
}

bool CsvReader::Next(CsvRecord& record)
{
    record.ended = false;
    while (SkipLineEnd()) {
    }
    if (AtEnd())
        return false;
    record.line = line_;
    record.fields.clear();
    do {
        record.fields.push_back(SkipIf('"') ? ReadQuoted() : ReadField());
    } while (SkipIf(','));
    record.ended = SkipLineEnd();
    if (!record.ended && !AtEnd())
        FailAtLine(line_, "text stands behind a closing quote");
    return true;
}

CsvField CsvReader::ReadField()
{
    CsvField field;
    for (int next = text_.sgetc(); next != kEnd && next != ',' && next != '\n'; next = text_.sgetc()) {
        if (next == '"')
            FailAtLine(line_, "a quote stands inside a field without quotes");
        field.text.push_back(static_cast<char>(Read()));
    }
    if (text_.sgetc() != ',' && field.text.ends_with('\r'))
        field.text.pop_back();
    return field;
}

CsvField CsvReader::ReadQuoted()
{
    const std::size_t firstLine = line_;
    CsvField field{.text = {}, .quoted = true};
    for (;;) {
        const int next = Read();
        if (next == kEnd)
            FailAtLine(firstLine, "a quote is not closed");
        if (next == '"' && !SkipIf('"'))
            return field;
        if (next == '\n')
            ++line_;
        field.text.push_back(static_cast<char>(next));
    }
}

bool CsvReader::SkipLineEnd()
{
    if (SkipIf('\r') && text_.sgetc() != '\n')
        FailAtLine(line_, "a carriage return stands without a line feed");
    if (!SkipIf('\n'))
        return false;
    ++line_;
    return true;
}

bool CsvReader::SkipIf(char wanted)
{
    const bool there = text_.sgetc() == std::char_traits<char>::to_int_type(wanted);
    if (there)
        Read();
    return there;
}

/// The next byte, or kEnd.
int CsvReader::Read()
{
    const int next = text_.sbumpc();
    if (next != kEnd)
        ++position_;
    return next;
}

}  // namespace tools
