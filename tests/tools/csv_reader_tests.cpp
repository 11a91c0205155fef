#include "make_database/csv_reader.h"

#include <gtest/gtest.h>

#include <sstream>

#include "platform/failure.h"

namespace {

/// All records of a text, one a line: fields between brackets, quoted ones with a "q"; or the failure.
std::string Parsed(const std::string& text)
{
    std::istringstream stream(text);
    std::string shown;
    try {
        tools::CsvReader reader(stream);
        for (tools::CsvRecord record; reader.Next(record);) {
            shown += std::to_string(record.line) + ":";
            for (const tools::CsvField& field : record.fields)
                shown += (field.quoted ? "q[" : "[") + field.text + "]";
            shown += "\n";
        }
    } catch (const platform::Failure& failure) {
        shown += failure.Description();
    }
    return shown;
}

TEST(CsvReader, SplitsRecordsAndFields)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"a", "1:[a]\n"},
        {"a,b\r\nc,d\r\n", "1:[a][b]\n2:[c][d]\n"},
        {"\xEF\xBB\xBFref\n", "1:[ref]\n"},
        {"\r\n\na\n\r\n\nb\n\n", "3:[a]\n6:[b]\n"},
        {"\"\",\n", "1:q[][]\n"},
        {"\"a,\"\"b\"\"\",c\n", "1:q[a,\"b\"][c]\n"},
        {"\"1\r\n2\n3\",x\r\ny\n", "1:q[1\r\n2\n3][x]\n4:[y]\n"},
        {"a,\"\"\r\nb,\r\n", "1:[a]q[]\n2:[b][]\n"},
        {" a , b\n", "1:[ a ][ b]\n"},
        {"\"\r\",\"\n\r\"\n\"\r\r\n\"\n", "1:q[\r]q[\n\r]\n3:q[\r\r\n]\n"},
        {"a\n\"b\n\nc", "1:[a]\nline 2: a quote is not closed"},
        {"\"a\"b\n", "line 1: text stands behind a closing quote"},
        {"x\na\"b\n", "1:[x]\nline 2: a quote stands inside a field without quotes"},
        {"\"a\"\rb\n", "line 1: a carriage return stands without a line feed"},
    };
    for (const auto& [text, records] : cases)
        EXPECT_EQ(Parsed(text), records) << text;
}

}  // namespace
