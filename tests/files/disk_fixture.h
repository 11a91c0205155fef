#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "platform/files/file_system.h"
#include "platform/files/profile_file.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace platform::files {

inline std::string Repeated(const std::string& text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

inline const std::string kOldRecord = "2021-05-13 15:07:09|5|old|p\r\n";
inline const std::string kNewRecord = "2021-05-15 15:07:09|5|new|p\r\n";

/// Settings and a log with something to trim, in a folder that goes with the test, and what a program does with them.
class DiskTest : public testing::Test {
protected:
    /// Whoever contends for a lock on a machine that has other work to do waits longer than a program does.
    explicit DiskTest(std::chrono::milliseconds lockWait = kLongestLockWait)
        : files_(lockWait), profile_(lockWait)
    {
        FillFolder();
    }

    void FillFolder()
    {
        WriteFile(config_, oldConfig_);
        WriteFile(log_, oldLog_);
    }

    void Save(const std::string& value)
    {
        profile_.WritePrivateProfileStringA({{"S", "key", value}}, config_);
    }

    /// The settings with this value.
    [[nodiscard]] std::string ConfigWith(const std::string& value) const
    {
        return "[S]\nkey=" + value + "\n" + comments_;
    }

    [[nodiscard]] int AppendFails(const std::string& bytes = "new\r\n")
    {
        return FailureOf([&] { files_.Append(log_, bytes); });
    }

    /// Both files as they were, and nothing beside them.
    void ExpectOldContents()
    {
        EXPECT_TRUE(ReadFile(config_) == oldConfig_);
        EXPECT_TRUE(ReadFile(log_) == oldLog_);
        for (const char* const replacement : {".Config.ini.new", ".Error.log.new"})
            EXPECT_FALSE(std::filesystem::exists(folder_.Path(replacement)));
    }

    TemporaryFolder folder_;
    const std::string config_ = folder_.Path("Config.ini");
    const std::string log_ = folder_.Path("Error.log");
    const std::string comments_ = Repeated("; a comment\n", 1000);
    const std::string oldConfig_ = ConfigWith("old");
    const std::string oldLog_ = Repeated(kOldRecord, 100) + Repeated(kNewRecord, 400);
    DiskFileSystem files_;
    DiskProfileFile profile_;
};

}  // namespace platform::files
