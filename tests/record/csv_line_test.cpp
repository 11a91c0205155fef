#include "record/csv_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "record/read_recording.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace record {
namespace {

using namespace std::chrono;

const platform::DateTime kArrival = local_days(2026y / May / 14) + 15h + 7min + 9s + 250ms;

TEST(CsvLine, EveryByteAndMillisecondComesBackOutOfTheDatabase)
{
    Texts texts = {EveryByte(), "",     "\r",  "\n",    "\r\n", "\n\r",
                   "\"",        "\"\"", "a\r", "\n\"a", "\n\n", "\xFF\xFE"};
    std::mt19937 random(5);
    for (int length = 0; length < 300; ++length) {
        texts.emplace_back();
        std::generate_n(std::back_inserter(texts.back()), length,
                        [&] { return static_cast<char>(random()); });
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
    for (const tools::Format format : {tools::Format::kJet4, tools::Format::kJet3})
        EXPECT_TRUE(PlayedRows(folder.Path("day.csv"), format) == rows);
}

}  // namespace
}  // namespace record
