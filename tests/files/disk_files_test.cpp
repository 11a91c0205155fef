#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>

#include "files/disk_fixture.h"
#include "platform/failure.h"

namespace platform::files {
namespace {

namespace fs = std::filesystem;

struct stat StatusOf(const std::string& path)
{
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status;
}

using DiskFiles = DiskTest;

TEST_F(DiskFiles, ExistWhereAnythingButAFolderStands)
{
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
    const std::pair<std::string, int> cases[] = {
        {folder_.Path("missing/log"), failure::kPathNotFound},
        {config_ + "/log", failure::kPathNotFound},
        {folder_.Path(std::string(300, 'x')), failure::kPathNotFound},
        {"", failure::kPathNotFound},
        {folder_.Path(), failure::kPathFileAccess},
    };
    for (const auto& [path, number] : cases) {
        const Failure failure = ThrownBy([&, path = path] { files_.Append(path, "x"); });
        EXPECT_EQ(failure.Number(), number) << failure.Description();
        EXPECT_TRUE(failure.Description().ends_with(": " + path)) << failure.Description();
    }
}

TEST_F(DiskFiles, ProfileIsNeverCreated)
{
    fs::remove(config_);
    for (const std::string& path : {config_, folder_.Path()}) {
        profile_.WritePrivateProfileStringA({{"S", "key", "x"}}, path);
        EXPECT_EQ(profile_.GetPrivateProfileStringA("S", "key", 256, path), "");
    }
    EXPECT_EQ(folder_.NamesBut("Error.log"), std::vector<std::string>{});
}

TEST_F(DiskFiles, ReplacementKeepsPermissionsOwnerAndLinks)
{
    constexpr uid_t kOtherOwner = 12345;
    fs::create_directory(folder_.Path("real"));
    const std::string real = folder_.Path("real/Config.ini");
    fs::rename(config_, real);
    ASSERT_EQ(::chmod(real.c_str(), 0646), 0);
    const bool mayGiveAway = ::chown(real.c_str(), kOtherOwner, kOtherOwner) == 0;
    fs::create_symlink("real/Config.ini", config_);
    const struct stat before = StatusOf(real);

    Save("new");

    EXPECT_TRUE(fs::is_symlink(config_));
    EXPECT_TRUE(ReadFile(real) == ConfigWith("new"));
    const struct stat after = StatusOf(real);
    EXPECT_NE(after.st_ino, before.st_ino) << "not a new file";
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_uid, mayGiveAway ? kOtherOwner : ::geteuid());
    EXPECT_EQ(after.st_gid, before.st_gid);
    Save("new");
    EXPECT_EQ(StatusOf(real).st_ino, after.st_ino) << "an equal value replaces nothing";
}

TEST_F(DiskFiles, WhatAKilledProgramLeftIsRemovedAtTheNextSaveOrTrim)
{
    fs::create_directory(folder_.Path("links"));
    fs::create_symlink("../Config.ini", folder_.Path("links/link"));
    const std::function<void()> actions[] = {
        [&] { Save("old"); }, [&] { Save("new"); },
        [&] { static_cast<void>(files_.OpenLocked(folder_.Path("links/link"))); }};
    for (const auto& act : actions) {
        WriteFile(folder_.Path(".Config.ini.new"), "half a f");
        act();
        EXPECT_FALSE(fs::exists(folder_.Path(".Config.ini.new")));
        EXPECT_TRUE(ReadFile(config_).ends_with(comments_));
    }
}

}  // namespace
}  // namespace platform::files
