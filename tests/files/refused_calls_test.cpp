#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <filesystem>

#include "files/child_process.h"
#include "platform/failure.h"
#include "platform/files/file_system.h"
#include "platform/files/profile_file.h"
#include "platform/posix/system_calls.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

/// What the system does to a program: calls that fail, locks that others keep, limits that it sets. Each body runs in a
/// child, because what it does to its process cannot be taken back.
namespace platform::files {
namespace {

/// A child that is busy for longer hangs.
constexpr rlim_t kSecondsOfWork = 5;

class RefusedCalls : public testing::Test {
protected:
    RefusedCalls()
    {
        WriteFile(config_, oldConfig_);
        WriteFile(log_, oldLog_);
    }

    template <class Body>
    void ExpectHoldsInChild(const Body& body)
    {
        const int status = Await(StartChild([&] {
            Limit(RLIMIT_CPU, kSecondsOfWork);
            body();
        }));
        EXPECT_EQ(status, 0) << "see the child's failures above";
    }

    int AppendFails()
    {
        return FailureOf([&] { files_.Append(log_, "new\r\n"); });
    }

    void Save(const std::string& value)
    {
        profile_.WritePrivateProfileStringA({{"S", "key", value}}, config_);
    }

    void ExpectOldContents()
    {
        EXPECT_EQ(ReadFile(config_), oldConfig_);
        EXPECT_EQ(ReadFile(log_), oldLog_);
        EXPECT_EQ(folder_.NamesBut("Config.ini"), std::vector<std::string>{"Error.log"});
    }

    TemporaryFolder folder_;
    const std::string config_ = folder_.Path("Config.ini");
    const std::string log_ = folder_.Path("Error.log");
    const std::string oldConfig_ = "[S]\nkey=old\n";
    const std::string oldLog_ = "old\r\n";
    DiskFileSystem files_;
    DiskProfileFile profile_;
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
            FailEvery(SYS_flock, error);
            EXPECT_EQ(AppendFails(), number) << error;
            Save("new");
            ExpectOldContents();
        });
}

TEST_F(RefusedCalls, AFileSystemWithoutLocksIsWrittenWithoutThem)
{
    for (const int error : {ENOLCK, EOPNOTSUPP})
        ExpectHoldsInChild([&] {
            WriteFile(log_, oldLog_);
            FailEvery(SYS_flock, error);
            EXPECT_EQ(AppendFails(), 0) << error;
            EXPECT_EQ(ReadFile(log_), oldLog_ + "new\r\n");
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
    EXPECT_EQ(AppendFails(), failure::kPermissionDenied);
    const auto threadsThatWait = threads();
    EXPECT_EQ(AppendFails(), failure::kPermissionDenied);
    EXPECT_EQ(threads(), threadsThatWait);
    holder_.Close();
    EXPECT_EQ(AppendFails(), 0);
    EXPECT_EQ(ReadFile(log_), oldLog_ + "new\r\n");
}

TEST_F(KeptLock, IsNotOursWhenWaitingIsRefused)
{
    ExpectHoldsInChild([&] {
        FailEvery(SYS_fcntl, EMFILE);
        EXPECT_EQ(AppendFails(), failure::kPathFileAccess);
    });
    ExpectHoldsInChild([&] {
        FailEvery(SYS_clone3, EAGAIN);
        FailEvery(SYS_clone, EAGAIN);
        EXPECT_NE(AppendFails(), 0);
    });
    ExpectOldContents();
}

TEST_F(RefusedCalls, ACallThatIsInterruptedForEverFails)
{
    for (const long call : {SYS_pread64, SYS_pwrite64, SYS_openat})
        ExpectHoldsInChild([&] {
            FailEvery(call, EINTR);
            Save("new");
        });
    for (const long call : {SYS_write, SYS_openat})
        ExpectHoldsInChild([&] {
            FailEvery(call, EINTR);
            EXPECT_EQ(AppendFails(), failure::kPathFileAccess);
        });
    ExpectOldContents();
}

TEST_F(RefusedCalls, APathThatCannotBeLookedUpIsAFailureAtOnce)
{
    ExpectHoldsInChild([&] {
        FailEvery(SYS_newfstatat, EIO);
        EXPECT_EQ(AppendFails(), failure::kPathFileAccess);
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
        Limit(RLIMIT_FSIZE, 1'000);
        EXPECT_EQ(FailureOf([&] { files_.Append(log_, std::string(2'000, 'x')); }), failure::kDiskFull);
        Save(std::string(2'000, 'x'));
        ExpectOldContents();
        Save("new");
        EXPECT_EQ(ReadFile(config_), "[S]\nkey=new\n") << "what fits is done";
    });
}

}  // namespace
}  // namespace platform::files
