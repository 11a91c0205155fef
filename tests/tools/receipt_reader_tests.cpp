#include "make_database/receipt_reader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "make_database/iso_date.h"
#include "platform/date_time.h"
#include "support/failure_of.h"

namespace {

using tools::DayNumberOfIso;

using Row = std::tuple<std::optional<std::int32_t>, std::optional<std::string>, std::optional<double>,
                       std::optional<double>>;

std::vector<Row> RowsOf(const std::string& csv)
{
    std::istringstream stream(csv);
    tools::ReceiptReader reader(stream);
    std::vector<Row> rows;
    for (tools::Receipt receipt; reader.Next(receipt);)
        rows.emplace_back(receipt.ref, receipt.rawtransaction, receipt.timestamp, receipt.datetimestamp);
    return rows;
}

TEST(ReceiptReader, TakesColumnsInAnyOrderAndTellsNullFromEmpty)
{
    const std::vector<Row> rows = {
        {-2147483648, "Total\r\n£ 1", std::nullopt, 1.0}, {}, {2147483647, "", std::nullopt, std::nullopt}};
    EXPECT_EQ(RowsOf("datetimestamp,rawtransaction,ref\n"
                     "1899-12-31,\"Total\r\n£ 1\",-2147483648\n"
                     ",,\n"
                     ",\"\",2147483647\n"),
              rows);
}

TEST(ReceiptReader, NamesTheLineOfWhatIsWrong)
{
    const struct {
        const char* csv;
        const char* failure;
    } cases[] = {
        {"", "line 1: the file has no line that names the columns"},
        {"ref,price\n", "line 1: unknown column: price"},
        {"ref,ref\n", "line 1: the column ref is named twice"},
        {"timestamp\n", "line 1: the column ref is missing"},
        {"ref,timestamp\n1\n", "line 2: 1 fields for 2 columns"},
        {"rawtransaction,ref\n\"a\nb\",1\nc,x\n", "line 4: ref is no whole number of 32 bits: x"},
        {"ref\n2147483648\n", "line 2: ref is no whole number of 32 bits: 2147483648"},
        {"ref\n1.5\n", "line 2: ref is no whole number of 32 bits: 1.5"},
        {"ref\n\"\"\n", "line 2: ref is no whole number of 32 bits: "},
        {"ref,timestamp\n1,noon\n", "line 2: not a date or time like 2021-05-14 15:07:09: noon"},
        {"ref,rawtransaction\n1,caf\xE9\n", "line 2: the text is not valid UTF-8"},
        {"ref,rawtransaction\n1,\xEF\xBF\xBD\n", ""},
    };
    for (const auto& [csv, failure] : cases)
        EXPECT_EQ(ThrownBy([csv = csv] { return RowsOf(csv); }).Description(), failure) << csv;
}

TEST(ReceiptReader, TellsHowARecordingEndsThatWasCutOff)
{
    const std::string head = "ref,timestamp,datetimestamp,rawtransaction\n";
    const std::string row = "1,,2021-05-14,\"a\nb\"\n";
    const struct {
        std::string csv;
        std::size_t rows;
        tools::CsvTail tail;
        std::size_t wholeBytes;
    } cases[] = {
        {head, 0, tools::CsvTail::kWhole, head.size()},
        {head + row, 1, tools::CsvTail::kWhole, head.size() + row.size()},
        {head + row + "\n", 1, tools::CsvTail::kWhole, head.size() + row.size()},
        {head + row + "2", 1, tools::CsvTail::kTorn, head.size() + row.size()},
        {head + row + "2,,2021-05-1", 1, tools::CsvTail::kTorn, head.size() + row.size()},
        {head + row + "2,,2021-05-14,", 1, tools::CsvTail::kTorn, head.size() + row.size()},
        {head + row + "2,,2021-05-14,\"a\n\"\"", 1, tools::CsvTail::kTorn, head.size() + row.size()},
        {head + row + "2,,,\"a\"", 2, tools::CsvTail::kNoLineEnd, head.size() + row.size() + 7},
        {"ref,rawtransaction\n1,a", 1, tools::CsvTail::kWhole, 22},
    };
    for (const auto& [csv, rows, tail, wholeBytes] : cases) {
        std::istringstream stream(csv);
        tools::ReceiptReader reader(stream);
        std::size_t count = 0;
        for (tools::Receipt receipt; reader.Next(receipt);)
            ++count;
        EXPECT_EQ(count, rows) << csv;
        EXPECT_EQ(reader.Tail(), tail) << csv;
        EXPECT_EQ(reader.WholeBytes(), wholeBytes) << csv;
    }
    EXPECT_EQ(ThrownBy([] { return RowsOf("rawtransaction,ref\n\"a\nb"); }).Description(),
              "line 2: a quote is not closed");
    EXPECT_EQ(ThrownBy([&] { return RowsOf(head + "1,,,\"a\"b"); }).Description(),
              "line 2: text stands behind a closing quote");
    EXPECT_EQ(ThrownBy([&] { return RowsOf(head + "1,,\n"); }).Description(),
              "line 2: 3 fields for 4 columns");
}

TEST(IsoDate, GivesTheDayNumberThatReadsBackAsTheSameMoment)
{
    using namespace std::chrono;
    const local_days day(year{1850} / June / 1);
    EXPECT_EQ(platform::FromDayNumber(DayNumberOfIso("1850-06-01T18:30:15.250").value()),
              day + hours(18) + minutes(30) + seconds(15) + milliseconds(250));

    const struct {
        const char* text;
        double dayNumber;
    } cases[] = {
        {"1899-12-30", 0},
        {"1899-12-31T06:00", 1.25},
        {"1899-12-29 06:00:00", -1.25},
        {"2000-02-29", 36585},
        {"12:00", 0.5},
        {"18:00:00.000", 0.75},
        {"0100-01-01", -657434.0},
        {"9999-12-31", 2958465.0},
    };
    for (const auto& [text, dayNumber] : cases)
        EXPECT_EQ(DayNumberOfIso(text), dayNumber) << text;
}

TEST(IsoDate, RefusesWhatIsNoDateOrTime)
{
    for (const char* text : {"", "2021", "2021-5-14", "2021-13-01", "1900-02-29", "0099-12-31", "14.05.2021",
                             "2021-05-14T", "2021-05-14x10:00", "2021-05-14T10:00Z", "2021-05-14T24:00",
                             "10:60", "10:00:60", "10:00:00.5", "10", "2021-05-14 10:00 ", "-021-05-14"})
        EXPECT_EQ(DayNumberOfIso(text), std::nullopt) << text;
}

}  // namespace
