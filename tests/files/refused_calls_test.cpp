#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <filesystem>
#include <future>

#include "files/child_process.h"
#include "files/disk_fixture.h"
#include "platform/failure.h"
#include "platform/posix/system_calls.h"
#include "support/failing_calls.h"

/// What the system does to a program: calls that fail, locks that others keep, limits that it sets. Each body runs in a
/// child, because what it does to its process cannot be taken back.
namespace platform::files {
namespace {

using namespace std::chrono_literals;

class RefusedCalls : public DiskTest {
protected:
    void ExpectLogHasTheNewLine() { EXPECT_TRUE(ReadFile(log_) == oldLog_ + "new\r\n"); }
};

TEST_F(RefusedCalls, WithoutItsLockAFileIsNotWritten)
{
    const std::pair<int, int> cases[] = {
        {EINTR, failure::kPathFileAccess},
        {EIO, failure::kPathFileAccess},
        {EBADF, failure::kPathFileAccess},
        {EWOULDBLOCK, failure::kPermissionDenied},
    };
    for (const auto& [error, number] : cases)
        ExpectHoldsInChild([&, error = error, number = number] {
            FailEvery({SYS_flock, error});
            EXPECT_EQ(AppendFails(), number) << error;
            Save("new");
            ExpectOldContents();
        });
}

TEST_F(RefusedCalls, AFileSystemWithoutLocksIsWrittenWithoutThem)
{
    for (const int error : {ENOLCK, EOPNOTSUPP})
        ExpectHoldsInChild([&] {
            FillFolder();
            FailEvery({SYS_flock, error});
            EXPECT_EQ(AppendFails(), 0) << error;
            ExpectLogHasTheNewLine();
        });
}

class KeptLock : public RefusedCalls {
protected:
    KeptLock() { EXPECT_EQ(::flock(holder_.Number(), LOCK_EX), 0); }

    FileDescriptor holder_{::open(log_.c_str(), O_RDONLY | O_CLOEXEC)};
};

TEST_F(KeptLock, IsWaitedForOnce)
{
    const auto threads = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    };
    const auto threadsBefore = threads();
    {
        std::promise<void> failed;
        const auto other = std::async(std::launch::async, [&] {
            if (failed.get_future().wait_for(1900ms) == std::future_status::timeout)
                ::flock(holder_.Number(), LOCK_UN);
        });
        EXPECT_EQ(AppendFails(), failure::kPermissionDenied)
            << "it waited for longer than the other kept the lock";
        failed.set_value();
    }
    EXPECT_EQ(AppendFails(), failure::kPermissionDenied);
    EXPECT_LE(threads(), threadsBefore + 1);
    holder_.Close();
    EXPECT_EQ(AppendFails(), 0);
    ExpectLogHasTheNewLine();
}

TEST_F(KeptLock, IsNotOursWhenWaitingIsRefused)
{
    ExpectHoldsInChild([&] {
        FailEvery({SYS_fcntl, EMFILE});
        EXPECT_EQ(AppendFails(), failure::kPathFileAccess);
    });
    ExpectHoldsInChild([&] {
        FailEvery({SYS_clone3, EAGAIN});
        FailEvery({SYS_clone, EAGAIN});
        EXPECT_NE(AppendFails(), 0);
    });
    ExpectOldContents();
}

TEST_F(RefusedCalls, ACallThatNeverSucceedsEndsInAFailure)
{
    for (const long call : {SYS_pread64, SYS_pwrite64, SYS_openat})
        ExpectHoldsInChild([&] {
            FailEvery({call, EINTR});
            Save("new");
        });
    const std::pair<long, int> cases[] = {{SYS_write, EINTR}, {SYS_openat, EINTR}, {SYS_newfstatat, EIO}};
    for (const auto& [call, error] : cases)
        ExpectHoldsInChild([&, call = call, error = error] {
            EXPECT_EQ(AppendFails(""), 0);  // the sanitizer's first look at an object makes calls of its own
            FailEvery({call, error});
            EXPECT_EQ(AppendFails(), failure::kPathFileAccess) << call;
        });
    ExpectOldContents();
}

TEST_F(RefusedCalls, OnlyARegularFileIsRead)
{
    std::filesystem::create_symlink("/dev/zero", folder_.Path("endless"));
    ASSERT_EQ(::mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
    for (const std::string& path : {folder_.Path("endless"), folder_.Path("pipe")})
        ExpectHoldsInChild([&] {
            ::alarm(60);
            EXPECT_EQ(profile_.GetPrivateProfileStringA("S", "key", 256, path), "") << path;
            profile_.WritePrivateProfileStringA({{"S", "key", "new"}}, path);
            EXPECT_EQ(FailureOf([&] { return files_.OpenLocked(path); }), failure::kPathFileAccess) << path;
        });
}

TEST_F(RefusedCalls, AHugeFileIsNoProfile)
{
    std::filesystem::resize_file(config_, std::uintmax_t{64} * 1024 * 1024);
    EXPECT_EQ(profile_.GetPrivateProfileStringA("S", "key", 256, config_), "");
}

TEST_F(RefusedCalls, TheLimitOfAFilesSizeIsAFullDisk)
{
    ExpectHoldsInChild([&] {
        IgnoreFatalWriteSignals();
        Limit(RLIMIT_FSIZE, oldConfig_.size() + 100);
        EXPECT_EQ(AppendFails(), failure::kDiskFull);
        Save(std::string(2'000, 'x'));
        profile_.WritePrivateProfileStringA({{"S", "key", "new"}, {"S", "other", std::string(2'000, 'x')}},
                                            config_);
        ExpectOldContents();
        Save("new");
        EXPECT_TRUE(ReadFile(config_) == ConfigWith("new")) << "what fits is done";
    });
}

}  // namespace
}  // namespace platform::files
