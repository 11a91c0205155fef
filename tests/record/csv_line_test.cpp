#include "record/csv_line.h"

#include <gtest/gtest.h>

#include <random>

#include "record/read_recording.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace record {
namespace {

using namespace std::chrono;

const platform::DateTime kArrival = local_days(2026y / May / 14) + 15h + 7min + 9s + 250ms;

TEST(CsvLine, WritesTheColumns)
{
    std::string csv;
    AppendLine(csv, {.ref = 7,
                     .timestamp = local_days(100y / January / 1) + 1s + 999ms,
                     .datetimestamp = kArrival,
                     .rawtransaction = "Total\r\n\"\x80 1\""});
    AppendLine(csv, {.ref = 8, .timestamp = {}, .datetimestamp = kArrival + 752ms, .rawtransaction = ""});
    EXPECT_EQ(csv,
              "7,0100-01-01T00:00:01,2026-05-14T15:07:09.250,\"Total\r\n\"\"\u20AC 1\"\"\"\n"
              "8,,2026-05-14T15:07:10.002,\"\"\n");
}

TEST(CsvLine, EveryByteAndMillisecondComesBackOutOfTheDatabase)
{
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    std::vector<std::string> texts = {all,
                                      "",
                                      "\r",
                                      "\n",
                                      "\r\n",
                                      "\n\r",
                                      "\"",
                                      "\"\"",
                                      std::string(3, '\0'),
                                      "\xFF\xFE",
                                      "\x81\x8D\x8F\x90\x9D",
                                      "a\r",
                                      "\na"};
    std::mt19937 random(5);
    for (int round = 0; round < 300; ++round) {
        texts.emplace_back();
        for (int length = round; length > 0; --length)
            texts.back() += static_cast<char>(random());
    }
    std::string csv(kColumns);
    std::vector<PlayedRow> rows;
    for (const std::string& text : texts) {
        const auto ref = static_cast<std::int32_t>(rows.size() + 1);
        const auto arrival = kArrival + milliseconds(random() % 86'400'000);
        AppendLine(csv, {.ref = ref, .timestamp = arrival, .datetimestamp = arrival, .rawtransaction = text});
        rows.push_back({ref, text, arrival});
    }
    const TemporaryFolder folder;
    WriteFile(folder.Path("day.csv"), csv);
    EXPECT_TRUE(PlayedRows(folder.Path("day.csv")) == rows);
    EXPECT_TRUE(PlayedRows(folder.Path("day.csv"), tools::Format::kJet3) == rows);
}

}  // namespace
}  // namespace record
