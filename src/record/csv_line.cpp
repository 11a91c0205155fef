#include "record/csv_line.h"

#include <chrono>
#include <cstddef>

#include "platform/ansi_code_page.h"

namespace record {
namespace {

void AppendDigits(std::string& text, long long number, std::size_t count)
{
    const std::size_t first = text.size();
    text.resize(first + count);
    for (std::size_t at = first + count; at-- > first; number /= 10)
        text[at] = static_cast<char>('0' + number % 10);
}

/// As 2026-05-14T15:07:09.
void AppendSeconds(std::string& text, platform::DateTime moment)
{
    using namespace std::chrono;
    const auto day = floor<days>(moment);
    const year_month_day date(day);
    const hh_mm_ss time(floor<seconds>(moment - day));
    AppendDigits(text, static_cast<int>(date.year()), 4);
    text += '-';
    AppendDigits(text, static_cast<unsigned>(date.month()), 2);
    text += '-';
    AppendDigits(text, static_cast<unsigned>(date.day()), 2);
    text += 'T';
    AppendDigits(text, time.hours().count(), 2);
    text += ':';
    AppendDigits(text, time.minutes().count(), 2);
    text += ':';
    AppendDigits(text, time.seconds().count(), 2);
}

void AppendMilliseconds(std::string& text, platform::DateTime moment)
{
    AppendSeconds(text, moment);
    text += '.';
    AppendDigits(text, (moment - std::chrono::floor<std::chrono::seconds>(moment)).count(), 3);
}

void AppendQuoted(std::string& csv, std::string_view ansi)
{
    csv += '"';
    while (!ansi.empty()) {
        const std::string_view piece = ansi.substr(0, ansi.find('"'));
        csv += platform::FromAnsi(piece);
        ansi.remove_prefix(piece.size());
        if (!ansi.empty()) {
            csv += "\"\"";
            ansi.remove_prefix(1);
        }
    }
    csv += '"';
}

}  // namespace

void AppendLine(std::string& csv, const Row& row)
{
    csv += std::to_string(row.ref);
    csv += ',';
    if (row.timestamp)
        AppendSeconds(csv, *row.timestamp);
    csv += ',';
    AppendMilliseconds(csv, row.datetimestamp);
    csv += ',';
    AppendQuoted(csv, row.rawtransaction);
    csv += '\n';
}

}  // namespace record
