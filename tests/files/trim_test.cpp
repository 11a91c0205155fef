#include "errorlog/error_log_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "fakes/clock_and_formats.h"
#include "platform/failure.h"
#include "platform/files/file_system.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace trellivan {
namespace {

using namespace std::chrono_literals;

const platform::DateTime kNoCutoff = std::chrono::local_days{1980y / 1 / 1};
const platform::DateTime kNoon = std::chrono::local_days{2021y / 5 / 14} + 12h;
constexpr int kNoLineLimit = -1;

class Trimming : public testing::Test {
protected:
    std::string Trimmed(const std::string& content, int lineLimit, platform::DateTime cutoff)
    {
        WriteFile(log_, content);
        file_.Trim(log_, lineLimit, cutoff);
        EXPECT_EQ(folder_.NamesBut("Error.log"), std::vector<std::string>{});
        return ReadFile(log_);
    }

    TemporaryFolder folder_;
    const std::string log_ = folder_.Path("Error.log");
    platform::files::DiskFileSystem files_{60s};
    platform::fakes::Clock clock_;
    platform::fakes::PlainFormats formats_;
    ErrorLogFile file_{files_, clock_, formats_};
};

TEST_F(Trimming, KeepsTheNewestLinesToTheByte)
{
    const std::tuple<const char*, std::string, int, std::string> cases[] = {
        {"one too many", "a\r\nb\r\nc\r\n", 2, "b\r\nc\r\n"},
        {"just enough: not rewritten", "a\r\nb\nc", 3, "a\r\nb\nc"},
        {"last line without an end", "a\r\nb\r\nc", 2, "b\r\nc\r\n"},
        {"lines of other systems", "a\nb\nc\n", 2, "b\r\nc\r\n"},
        {"empty lines count", "a\r\n\r\n\r\n", 2, "\r\n\r\n"},
        {"stray carriage returns stay", "a\r\nb\rb\r\r\n\r", 2, "b\rb\r\r\n\r\r\n"},
        {"any byte stays", std::string("a\nb\0\xE9\x81\xFF\n", 8), 1, std::string("b\0\xE9\x81\xFF\r\n", 7)},
        {"nothing allowed", "a\r\nb", 0, ""},
        {"nothing there", "", 0, ""},
        {"no limit", "a\nb", kNoLineLimit, "a\nb"},
    };
    for (const auto& [name, before, limit, after] : cases)
        EXPECT_EQ(Trimmed(before, limit, kNoCutoff), after) << name;
}

TEST_F(Trimming, DropsLinesByTheDateInFrontOfTheFirstBlank)
{
    const std::pair<std::string, bool> cases[] = {
        {"2021-05-15 00:00:01|5|next day|p", true},
        {"2021-05-14 15:07:09|5|the cutoff's own day counts from midnight|p", false},
        {"2021-05-13 15:07:09|5|older|p", false},
        {"2021-05-13|5|midnight has no blank after the date|p", true},
        {" 2021-05-13 begins with a blank", true},
        {"2021-13-13 is no date", true},
        {"12:30:00 is a time alone", true},
        {"", true},
    };
    std::string before;
    std::string after;
    for (const auto& [line, isKept] : cases) {
        before += line + "\n";
        after += isKept ? line + "\r\n" : "";
    }
    EXPECT_EQ(Trimmed(before, kNoLineLimit, kNoon), after);
    EXPECT_EQ(Trimmed("2021-05-15 a\n2021-05-15 b\n2021-05-13 c\n", 2, kNoon), "2021-05-15 b\r\n")
        << "the lines are counted first";
    EXPECT_EQ(Trimmed("2021-05-14 x\n", kNoLineLimit, std::chrono::floor<std::chrono::days>(kNoon)), "");
    EXPECT_EQ(Trimmed("1970-01-01 x\n", kNoLineLimit, kNoCutoff), "1970-01-01 x\n") << "no age limit";
    EXPECT_EQ(Trimmed("1980-01-01 x\n1980-01-02 x", kNoLineLimit, kNoCutoff + 1ms), "1980-01-02 x\r\n");
}

TEST_F(Trimming, ReadsOnAtTheEdgeOfAPiece)
{
    constexpr std::size_t kPiece = 0x40000;
    for (const std::size_t length : {kPiece - 2, kPiece - 1, kPiece, 3 * kPiece}) {
        const std::string line = "2021-05-15 " + std::string(length - 11, 'x');
        for (const char* const end : {"", "\n", "\r\n"})
            EXPECT_TRUE(Trimmed("a\n" + line + end, kNoLineLimit, kNoon) == "a\r\n" + line + "\r\n")
                << length;
        EXPECT_TRUE(Trimmed(line + "\rb", kNoLineLimit, kNoon) == line + "\rb\r\n") << length;
    }
}

TEST_F(Trimming, IsSilentWhereThereIsNoLog)
{
    file_.Trim(folder_.Path("missing/Error.log"), 0, kNoon);
    file_.Trim(log_, 0, kNoon);
    std::filesystem::create_directory(log_);
    file_.Trim(log_, 0, kNoon);
    EXPECT_EQ(folder_.NamesBut("Error.log"), std::vector<std::string>{});
}

TEST_F(Trimming, LetsARecordWrittenMeanwhileWaitForTheNewFile)
{
    WriteFile(log_, "old\r\n");
    std::thread writer;
    {
        const auto log = files_.OpenLocked(log_);
        writer = std::thread([&] { files_.Append(log_, "new\r\n"); });
        log->KeepLines([](std::int64_t, std::string_view) { return false; });
        for (int times = 0; times < 300; ++times)
            log->KeepLines([](std::int64_t, std::string_view) { return true; });
        EXPECT_EQ(ReadFile(log_), "");
    }
    writer.join();
    EXPECT_EQ(ReadFile(log_), "new\r\n");
}

TEST_F(Trimming, WhatFailsOnTheWayLeavesTheLogAsItWas)
{
    WriteFile(log_, "a\nb\n");
    const auto failing = [](std::int64_t number, std::string_view) {
        return number < 2 ? false : throw platform::Failure(platform::failure::kOverflow, "the second line");
    };
    EXPECT_EQ(FailureOf([&] { files_.OpenLocked(log_)->KeepLines(failing); }), platform::failure::kOverflow);
    EXPECT_EQ(ReadFile(log_), "a\nb\n");
}

using Recording = Trimming;

TEST_F(Recording, WritesALineOfCodePage1252)
{
    clock_.now = kNoon;
    file_.Write(log_, {"6", "caf\u00E9 \u20AC \u0416", "frmConnect.cmdPause"});
    EXPECT_EQ(ReadFile(log_), "2021-05-14 12:00:00|6|caf\xE9 \x80 ?|frmConnect.cmdPause\r\n");
}

}  // namespace
}  // namespace trellivan
