#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sstream>

#include "errorlog/error_log_file.h"
#include "fakes/clock_and_formats.h"
#include "files/child_process.h"
#include "files/disk_fixture.h"
#include "platform/failure.h"

namespace platform::files {
namespace {

using namespace std::chrono_literals;

const DateTime kCutoff = std::chrono::local_days{2021y / 5 / 14};
constexpr int kNoLineLimit = -1;
constexpr int kKills = 25;

class Faults : public DiskTest {
protected:
    Faults() : DiskTest(60s) {}

    void Trim(int lineLimit)
    {
        trellivan::ErrorLogFile(files_, clock_, formats_).Trim(log_, lineLimit, kCutoff);
    }

    int LongAppendFails() { return AppendFails(Repeated(kNewRecord, 1000)); }

    void MountMemory()
    {
        ASSERT_EQ(::mount("none", folder_.Path().c_str(), "tmpfs", 0, "size=256k"), 0);
        FillFolder();
    }

    void MakeMountOfItsOwn(const std::string& path)
    {
        ASSERT_EQ(::mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
    }

    void CloseToWriting(const std::string& path)
    {
        ASSERT_EQ(::mount("none", path.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
    }

    /// Takes all room but `left` bytes.
    void FillDisk(std::size_t left)
    {
        const std::string filler = folder_.Path("filler");
        WriteFile(filler, std::string(1 << 20, 'x'));
        std::filesystem::resize_file(filler, std::filesystem::file_size(filler) - left);
    }

    fakes::Clock clock_;
    fakes::PlainFormats formats_;
};

TEST_F(Faults, AFullDiskLeavesTheOldContents)
{
    ExpectHoldsInChild([&] {
        ASSERT_NO_FATAL_FAILURE(TakeOwnMounts());
        MountMemory();
        FillDisk(4096);
        Save(std::string(20000, 'y'));
        Save("new");
        EXPECT_EQ(LongAppendFails(), failure::kDiskFull);
        Trim(kNoLineLimit);
        Trim(450);
        ExpectOldContents();
        Trim(10);
        EXPECT_EQ(ReadFile(log_), Repeated(kNewRecord, 10)) << "what fits is done";
    });
}

TEST_F(Faults, WhatIsClosedToWritingIsNotReplaced)
{
    const std::vector<std::string> closings[] = {{folder_.Path()}, {config_, log_}};
    for (const std::vector<std::string>& closed : closings) {
        ExpectHoldsInChild([&] {
            ASSERT_NO_FATAL_FAILURE(TakeOwnMounts());
            for (const std::string& path : closed) {
                MakeMountOfItsOwn(path);
                CloseToWriting(path);
            }
            Save("new");
            EXPECT_EQ(LongAppendFails(), failure::kPermissionDenied);
            Trim(10);
            ExpectOldContents();
        });
    }
}

TEST_F(Faults, WithoutAPlaceForANewFileItIsWrittenInPlace)
{
    ExpectHoldsInChild([&] {
        ASSERT_NO_FATAL_FAILURE(TakeOwnMounts());
        MountMemory();
        MakeMountOfItsOwn(config_);
        MakeMountOfItsOwn(log_);
        Save("x");
        EXPECT_TRUE(ReadFile(config_) == ConfigWith("x")) << "a mount cannot be moved over";
        FillDisk(8192);
        CloseToWriting(folder_.Path());
        Save(std::string(5000, 'y'));
        EXPECT_TRUE(ReadFile(config_) == ConfigWith(std::string(5000, 'y')));
        Save("old");
        Save(std::string(20000, 'y'));
        ExpectOldContents();
        Trim(kNoLineLimit);
        EXPECT_TRUE(ReadFile(log_) == Repeated(kNewRecord, 400));
    });
}

/// Starts a program again and again that does `work` for ever, and kills it at a random moment within the
/// first few times, however slow the disk; `check` looks at what each left.
template <class Work, class Check>
void KillAtRandomMoments(const Work& work, const Check& check)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    const auto once = std::chrono::floor<std::chrono::microseconds>(std::chrono::steady_clock::now() - start);
    std::mt19937 random(20210514);
    std::uniform_int_distribution<std::int64_t> delay(1, std::clamp(8 * once, 20'000us, 900'000us).count());
    for (int i = 0; i < kKills; ++i) {
        const std::chrono::microseconds moment(delay(random));
        const int status = Await(StartChild([&] {
            KillThisProcessAfter(moment);
            for (;;)
                work();
        }));
        ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM);
        check();
    }
}

/// The numbers at the ends of lines that are whole, in their order.
std::vector<int> NumbersOf(const std::string& log)
{
    std::vector<int> numbers;
    std::istringstream stream(log);
    for (std::string line; std::getline(stream, line);) {
        EXPECT_TRUE(line.starts_with("2021-05-15 ") && line.ends_with("\r")) << line;
        numbers.push_back(std::atoi(line.c_str() + 11));
    }
    return numbers;
}

TEST_F(Faults, AKilledProgramLeavesOldOrNewSettingsAndEveryRecord)
{
    constexpr int kLines = 300;
    const std::string longValue(30000, 'y');
    const std::string settings[] = {ConfigWith("short"), ConfigWith(longValue)};
    WriteFile(config_, settings[0]);
    WriteFile(log_, "");
    std::array<int, 2> seen{};
    int next = 0;
    const auto append = [&](int count) {
        for (; count > 0; --count)
            files_.Append(log_, "2021-05-15 " + std::to_string(next++) + "\r\n");
    };
    append(kLines);
    KillAtRandomMoments(
        [&] {
            Save(longValue);
            append(20);
            Save("short");
            Trim(kLines);
        },
        [&] {
            const auto found = std::ranges::find(settings, ReadFile(config_));
            ASSERT_NE(found, std::end(settings)) << "neither old nor new";
            ++seen[static_cast<std::size_t>(found - settings)];
            const std::vector<int> numbers = NumbersOf(ReadFile(log_));
            ASSERT_GE(numbers.size(), static_cast<std::size_t>(kLines));
            ASSERT_GE(numbers.back(), next - 1) << "an earlier record is gone";
            for (std::size_t i = 1; i < numbers.size(); ++i)
                ASSERT_EQ(numbers[i], numbers[i - 1] + 1);
            next = numbers.back() + 1;
        });
    EXPECT_GT(std::min(seen[0], seen[1]), 0) << "the moments were not random enough";
    EXPECT_GT(next, kLines + 20) << "no program appended";
    Save("the last");
    Trim(kLines);
    EXPECT_EQ(folder_.NamesBut("Config.ini"), std::vector<std::string>{"Error.log"});
}

}  // namespace
}  // namespace platform::files
