#include "make_database/receipt_reader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "make_database/iso_date.h"
#include "platform/date_time.h"
#include "support/failure_of.h"

namespace {

using namespace std::chrono_literals;
using tools::DayNumberOfIso;

using Row = std::tuple<std::optional<std::int32_t>, std::optional<std::string>, std::optional<double>,
                       std::optional<double>>;

std::vector<Row> RowsOf(tools::ReceiptReader& reader)
{
    std::vector<Row> rows;
    for (tools::Receipt receipt; reader.Next(receipt);)
        rows.emplace_back(receipt.ref, receipt.rawtransaction, receipt.timestamp, receipt.datetimestamp);
    return rows;
}

std::vector<Row> RowsOf(const std::string& csv)
{
    std::istringstream stream(csv);
    tools::ReceiptReader reader(stream);
    return RowsOf(reader);
}

std::string FailureIn(const std::string& csv)
{
    return ThrownBy([&] { return RowsOf(csv); }).Description();
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
    const std::pair<const char*, const char*> cases[] = {
        {"", "line 1: the file has no line that names the columns"},
        {"ref,price\n", "line 1: unknown column: price"},
        {"ref,ref\n", "line 1: the column ref is named twice"},
        {"timestamp\n", "line 1: the column ref is missing"},
        {"ref,timestamp\n1\n", "line 2: 1 fields for 2 columns"},
        {"rawtransaction,ref\n\"a\nb\",1\nc,x\n", "line 4: ref is no whole number of 32 bits: x"},
        {"ref\n2147483648\n", "line 2: ref is no whole number of 32 bits: 2147483648"},
        {"ref\n\"\"\n", "line 2: ref is no whole number of 32 bits: "},
        {"ref,timestamp\n1,noon\n", "line 2: not a date or time like 2021-05-14 15:07:09: noon"},
        {"ref,rawtransaction\n1,caf\xE9\n", "line 2: the text is not valid UTF-8"},
        {"ref,rawtransaction\n1,\xEF\xBF\xBD\n", ""},
    };
    for (const auto& [csv, failure] : cases)
        EXPECT_EQ(FailureIn(csv), failure) << csv;
}

TEST(ReceiptReader, TellsHowARecordingEndsThatWasCutOff)
{
    using enum tools::CsvTail;
    const std::string whole = "ref,timestamp,datetimestamp,rawtransaction\n1,,2021-05-14,\"a\nb\"\n";
    const std::pair<const char*, tools::CsvTail> tails[] = {{"", kWhole},
                                                            {"\n", kWhole},
                                                            {"2", kTorn},
                                                            {"2,,2021-05-14,\"a\n\"\"", kTorn},
                                                            {"2,,,\"a\"", kNoLineEnd}};
    for (const auto& [text, tail] : tails) {
        std::istringstream stream(whole + text);
        tools::ReceiptReader reader(stream);
        EXPECT_EQ(RowsOf(reader).size(), tail == kNoLineEnd ? 2U : 1U) << text;
        EXPECT_EQ(reader.Tail(), tail) << text;
        EXPECT_EQ(reader.WholeBytes(), whole.size() + (tail == kNoLineEnd ? 7 : 0)) << text;
    }
    EXPECT_EQ(FailureIn("rawtransaction,ref\n\"a\nb"), "line 2: a quote is not closed") << "no recording";
    EXPECT_EQ(FailureIn(whole + "1,,,\"a\"b"), "line 4: text stands behind a closing quote");
}

TEST(IsoDate, GivesTheDayNumberThatReadsBackAsTheSameMoment)
{
    const platform::DateTime moment = std::chrono::local_days{1850y / 6 / 1} + 18h + 30min + 15s + 250ms;
    EXPECT_EQ(platform::FromDayNumber(DayNumberOfIso("1850-06-01T18:30:15.250").value()), moment);
    const std::pair<const char*, double> cases[] = {{"1899-12-30", 0},
                                                    {"1899-12-31T06:00", 1.25},
                                                    {"1899-12-29 06:00:00", -1.25},
                                                    {"2000-02-29", 36585},
                                                    {"12:00", 0.5},
                                                    {"18:00:00.000", 0.75},
                                                    {"0100-01-01", -657434.0},
                                                    {"9999-12-31", 2958465.0}};
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
