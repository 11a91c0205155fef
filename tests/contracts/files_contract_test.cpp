#include <gtest/gtest.h>

#include "fakes/files.h"
#include "platform/files/file_system.h"
#include "platform/files/profile_file.h"
#include "support/failure_of.h"
#include "support/files.h"
#include "support/temporary_folder.h"

namespace platform {
namespace {

struct FakeFiles {
    fakes::Journal journal;
    fakes::FileSystem files{journal, "files"};
    fakes::ProfileFile profile{journal, "profile"};

    [[nodiscard]] std::string Path(const std::string& name) const { return "/folder/" + name; }
    void Write(const std::string& path, const std::string& bytes) { files.contents[path] = bytes; }
    [[nodiscard]] std::string Read(const std::string& path) { return files.contents[path]; }
};

struct RealFiles {
    TemporaryFolder folder;
    files::DiskFileSystem files;
    files::DiskProfileFile profile;

    [[nodiscard]] std::string Path(const std::string& name) const { return folder.Path(name); }
    void Write(const std::string& path, const std::string& bytes) { WriteFile(path, bytes); }
    [[nodiscard]] std::string Read(const std::string& path) { return ReadFile(path); }
};

template <class Files>
class FilesContract : public testing::Test {
protected:
    Files its;
    const std::string path = its.Path("file");
};

using Kinds = testing::Types<FakeFiles, RealFiles>;
TYPED_TEST_SUITE(FilesContract, Kinds);

TYPED_TEST(FilesContract, AppendMakesTheFileAndAddsToIt)
{
    auto& files = this->its.files;
    EXPECT_FALSE(files.FileExists(this->path));
    EXPECT_FALSE(files.FileExists(""));
    files.Append(this->path, "one\r\n");
    files.Append(this->path, std::string("\0\xE9", 2));
    EXPECT_TRUE(files.FileExists(this->path));
    EXPECT_EQ(this->its.Read(this->path), std::string("one\r\n\0\xE9", 7));
    EXPECT_EQ(FailureOf([&] { files.Append("", "x"); }), failure::kPathNotFound);
}

TYPED_TEST(FilesContract, OpenLockedNeedsAFile)
{
    EXPECT_EQ(FailureOf([&] { return this->its.files.OpenLocked(this->path); }), failure::kPathNotFound);
    EXPECT_FALSE(this->its.files.FileExists(this->path));
}

TYPED_TEST(FilesContract, ProfileNamesMatchInAnyLetterCase)
{
    auto& profile = this->its.profile;
    this->its.Write(this->path, "[Other]\r\n");
    profile.WritePrivateProfileStringA({{"Database File", "FilePath", "/old.mdb"}}, this->path);
    profile.WritePrivateProfileStringA(
        {{"DATABASE FILE", "filepath", "/new.mdb"}, {"Timer", "Interval", "1"}, {"Timer", "INTERVAL", "25"}},
        this->path);
    const auto value = [&](const char* section, const char* key) {
        return profile.GetPrivateProfileStringA(section, key, 256, this->path);
    };
    EXPECT_EQ(value("Database File", "FilePath"), "/new.mdb");
    EXPECT_EQ(value("database file", "Filepath"), "/new.mdb");
    EXPECT_EQ(value("timer", "interval"), "25");
    EXPECT_EQ(value("Database File", "File"), "");
    EXPECT_EQ(value("Database", "FilePath"), "");
}

TYPED_TEST(FilesContract, AProfileValueIsCutToOneCharacterLessThanTheLength)
{
    auto& profile = this->its.profile;
    this->its.Write(this->path, "[Section]\r\n");
    profile.WritePrivateProfileStringA({{"Section", "Key", "x\xC3\xA9\xC3\xA9\xC3\xA9"}}, this->path);
    const std::pair<std::size_t, const char*> cases[] = {
        {256, "x\xC3\xA9\xC3\xA9\xC3\xA9"}, {4, "x\xC3\xA9\xC3\xA9"}, {2, "x"}, {1, ""}, {0, ""}};
    for (const auto& [length, value] : cases)
        EXPECT_EQ(profile.GetPrivateProfileStringA("Section", "Key", length, this->path), value) << length;
}

}  // namespace
}  // namespace platform
