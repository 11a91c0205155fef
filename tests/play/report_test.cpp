#include "play/report.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>

#include <cerrno>
#include <nlohmann/json.hpp>

#include "play/progress.h"
#include "play/report_file.h"
#include "support/failing_calls.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace {

using namespace std::chrono_literals;
using player::Figures;
using player::Outcome;
using player::ProgressText;
using player::ReportOf;
using player::SummaryOf;
using Json = nlohmann::json;

Figures Till(const std::string& name, Outcome outcome)
{
    Figures figures{.name = name,
                    .target = "here",
                    .outcome = outcome,
                    .records = 3,
                    .bytes = 1000,
                    .seconds = 1.25,
                    .recordsRefused = 1,
                    .recordsInDoubt = 2,
                    .connections = 1,
                    .late = 4,
                    .errors = {{10054, "frmConnect.WinsockConnect.Error", "The connection is lost", 2}}};
    figures.lateness.Add(2ms);
    return figures;
}

TEST(Report, OfOneTillHasItsFiguresAndIsJsonWhateverTheDescriptionsHold)
{
    Figures till = Till("a", Outcome::kLost);
    till.errors.front().description += "\xFF\n";
    const Json expected = Json::parse(R"({"outcome": "lost", "records": 3, "bytes": 1000, "seconds": 1.25,
        "records_refused": 1, "records_in_doubt": 2, "connections": 1,
        "lateness_ms": {"p50": 2.0, "p99": 2.0, "max": 2.0}, "late": 4,
        "errors": [{"number": 10054, "procedure": "frmConnect.WinsockConnect.Error",
                    "description": "The connection is lost\uFFFD\n", "count": 2}]})");
    EXPECT_EQ(Json::parse(ReportOf({till}, false)), expected);
}

TEST(Report, OfAShopHasTotalsAndEachTill)
{
    Figures second = Till("b", Outcome::kFailed);
    second.seconds = 7;
    second.lateness.Add(9ms);
    const Json report = Json::parse(ReportOf({Till("a", Outcome::kComplete), second}, true));
    EXPECT_EQ(report["outcome"], "failed");
    EXPECT_EQ(report["records"], 6);
    EXPECT_EQ(report["seconds"], 7);
    EXPECT_EQ(report["lateness_ms"]["max"], 9);
    ASSERT_EQ(report["errors"].size(), 1U);
    EXPECT_EQ(report["errors"][0]["count"], 4);
    ASSERT_EQ(report["tills"].size(), 2U);
    EXPECT_EQ(report["tills"][0]["name"], "a");
    EXPECT_EQ(report["tills"][1]["lateness_ms"]["max"], 9);
}

TEST(Summary, SaysTheSameInWords)
{
    EXPECT_EQ(SummaryOf({Till("a", Outcome::kLost)}),
              "lost\n"
              "  3 records, 1,000 bytes in 1.2 s to here, 1 connection\n"
              "  1 record refused, 2 in doubt\n"
              "  lateness p50 2.000 ms, p99 2.000 ms, max 2.000 ms; 4 late by more than an interval\n"
              "  10054 frmConnect.WinsockConnect.Error: The connection is lost (2 times)\n");
    EXPECT_TRUE(SummaryOf({Till("a", Outcome::kComplete), Till("b", Outcome::kFailed)})
                    .starts_with("2 tills: 1 complete, 1 failed\n  6 records"));
}

TEST(Progress, TellsOfOneTillAndOfAShop)
{
    EXPECT_EQ(ProgressText({.tills = 1, .records = 1000, .total = 3000, .reconnections = 1}, 39.6, 65s),
              "1,000 of 3,000 records, 40 records/s, 1:05 elapsed, 2:10 left, 1 reconnection");
    EXPECT_EQ(ProgressText({.tills = 1, .records = 0, .total = std::nullopt}, 0, 0s),
              "0 records, 0 records/s, 0:00 elapsed, 0 reconnections");
    EXPECT_EQ(ProgressText({.tills = 1000, .playing = 998, .waiting = 2, .records = 1}, 39998, 5s),
              "998 of 1,000 tills play, 2 wait, 39,998 records/s, 0:05 elapsed, 0 reconnections");
}

TEST(ReportFile, EndsWithoutAReportWhereEachWriteIsInterrupted)
{
    const TemporaryFolder folder;
    player::ReportFile file(folder.Path("report.json"));
    WithFailingCall({.number = SYS_write, .error = EINTR, .length = 6},
                    [&] { EXPECT_FALSE(file.Write("report", [] { return true; })); });
    EXPECT_TRUE(file.Write("report", [] { return true; }));
    EXPECT_EQ(ReadFile(folder.Path("report.json")), "report");
}

TEST(ErrorList, CountsEqualErrorsAndKeepsNoMoreThanSomeKinds)
{
    player::ErrorList errors;
    for (int time = 0; time < 3; ++time)
        errors.Write("", {"91", "No record set is open", "frmConnect.cmdClear"});
    for (int kind = 0; kind < 1000; ++kind)
        errors.Write("", {"5", std::to_string(kind), "frmConnect.tmrSendData"});
    ASSERT_EQ(errors.Errors().size(), 101U);
    EXPECT_EQ(errors.Errors().front().count, 3);
    EXPECT_EQ(errors.Errors().front().number, 91);
    EXPECT_EQ(errors.Errors().back().count, 901);
}

}  // namespace
