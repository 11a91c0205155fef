#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/failure.h"
#include "platform/files/file_system.h"
#include "platform/files/profile_file.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace platform::files {
namespace {

namespace fs = std::filesystem;

struct stat StatusOf(const std::string& path)
{
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status;
}

class DiskFiles : public testing::Test {
protected:
    void Write(const std::string& value, const std::string& path)
    {
        profile_.WritePrivateProfileStringA({{"S", "key", value}}, path);
    }

    TemporaryFolder folder_;
    const std::string config_ = folder_.Path("Config.ini");
    DiskFileSystem files_;
    DiskProfileFile profile_;
};

TEST_F(DiskFiles, ExistWhereAnythingButAFolderStands)
{
    WriteFile(config_, "");
    fs::create_symlink("Config.ini", folder_.Path("link"));
    fs::create_symlink("nowhere", folder_.Path("dangling"));
    EXPECT_TRUE(files_.FileExists(config_));
    EXPECT_TRUE(files_.FileExists(folder_.Path("link")));
    for (const std::string& path :
         {folder_.Path(), folder_.Path("dangling"), folder_.Path("x"), std::string()})
        EXPECT_FALSE(files_.FileExists(path)) << path;
}

TEST_F(DiskFiles, AppendNamesWhatFailed)
{
    WriteFile(config_, "");
    ASSERT_EQ(::mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
    const std::pair<std::string, int> cases[] = {
        {folder_.Path("missing/log"), failure::kPathNotFound},
        {config_ + "/log", failure::kPathNotFound},
        {folder_.Path(std::string(300, 'x')), failure::kPathNotFound},
        {"", failure::kPathNotFound},
        {folder_.Path(), failure::kPathFileAccess},
        {folder_.Path("pipe"), failure::kPathFileAccess},
    };
    for (const auto& [path, number] : cases) {
        const Failure failure = ThrownBy([&, path = path] { files_.Append(path, "x"); });
        EXPECT_EQ(failure.Number(), number) << failure.Description();
        EXPECT_TRUE(failure.Description().ends_with(": " + path)) << failure.Description();
    }
}

TEST_F(DiskFiles, ProfileReadsAtMostTheBufferLessOneCharacter)
{
    WriteFile(config_, "[S]\nkey=" + std::string(300, 'x'));
    EXPECT_EQ(profile_.GetPrivateProfileStringA("s", "KEY", 256, config_), std::string(255, 'x'));
    EXPECT_EQ(profile_.GetPrivateProfileStringA("s", "KEY", 0, config_), "");
    EXPECT_EQ(profile_.GetPrivateProfileStringA("s", "KEY", 256, folder_.Path()), "");
    EXPECT_EQ(profile_.GetPrivateProfileStringA("s", "KEY", 256, folder_.Path("missing")), "");
}

TEST_F(DiskFiles, ProfileIsNeverCreated)
{
    Write("x", config_);
    Write("x", folder_.Path());
    EXPECT_EQ(folder_.NamesBut(""), std::vector<std::string>{});
}

TEST_F(DiskFiles, ReplacementKeepsPermissionsOwnerAndLinks)
{
    constexpr uid_t kOtherOwner = 12345;
    fs::create_directory(folder_.Path("real"));
    const std::string real = folder_.Path("real/Config.ini");
    WriteFile(real, "[S]\nkey=old\n");
    ASSERT_EQ(::chmod(real.c_str(), 0646), 0);
    const bool mayGiveAway = ::chown(real.c_str(), kOtherOwner, kOtherOwner) == 0;
    fs::create_symlink("real/Config.ini", config_);
    const struct stat before = StatusOf(real);

    Write("new", config_);

    EXPECT_TRUE(fs::is_symlink(config_));
    EXPECT_EQ(ReadFile(real), "[S]\nkey=new\n");
    const struct stat after = StatusOf(real);
    EXPECT_NE(after.st_ino, before.st_ino) << "not a new file";
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, mayGiveAway ? kOtherOwner : ::geteuid());
    EXPECT_EQ(after.st_gid, before.st_gid);
    Write("new", config_);
    EXPECT_EQ(StatusOf(real).st_ino, after.st_ino) << "an equal value replaces nothing";
}

TEST_F(DiskFiles, WhatAKilledProgramLeftIsRemovedAtTheNextSaveOrTrim)
{
    WriteFile(config_, "[S]\nkey=x\n");
    fs::create_directory(folder_.Path("links"));
    fs::create_symlink("../Config.ini", folder_.Path("links/link"));
    const auto leftover = folder_.Path(".Config.ini.new");
    for (const char* const value : {"x", "y"}) {
        WriteFile(leftover, "half a f");
        Write(value, config_);
        EXPECT_FALSE(fs::exists(leftover));
        EXPECT_EQ(profile_.GetPrivateProfileStringA("S", "key", 256, config_), value);
    }
    WriteFile(leftover, "half a f");
    static_cast<void>(files_.OpenLocked(folder_.Path("links/link")));
    EXPECT_FALSE(fs::exists(leftover));
}

}  // namespace
}  // namespace platform::files
