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
    auto& files = this->its.files;
    EXPECT_EQ(FailureOf([&] { return files.OpenLocked(this->path); }), failure::kPathNotFound);
    EXPECT_FALSE(files.FileExists(this->path));
    files.Append(this->path, "");
    EXPECT_EQ(files.OpenLocked(this->path)->CountLines(), 0);
}

TYPED_TEST(FilesContract, LinesEndAtALineFeedWithOrWithoutACarriageReturn)
{
    const struct {
        std::string content;
        std::vector<std::string> lines;
    } cases[] = {
        {"", {}},
        {"a", {"a"}},
        {"a\r\nb\n", {"a", "b"}},
        {"\r\n\n", {"", ""}},
        {"a\rb\r\r\n\r", {"a\rb\r", "\r"}},
        {std::string("\0\n", 2), {std::string("\0", 1)}},
    };
    for (const auto& [content, lines] : cases) {
        SCOPED_TRACE(testing::PrintToString(content));
        this->its.Write(this->path, content);
        const auto file = this->its.files.OpenLocked(this->path);
        EXPECT_EQ(file->CountLines(), static_cast<std::int64_t>(lines.size()));
        std::vector<std::string> read;
        file->KeepLines([&](std::int64_t number, std::string_view line) {
            read.emplace_back(line);
            return number == static_cast<std::int64_t>(read.size());
        });
        EXPECT_EQ(read, lines);
        std::string kept;
        for (const std::string& line : lines)
            kept += line + "\r\n";
        EXPECT_EQ(this->its.Read(this->path), kept);
    }
}

TYPED_TEST(FilesContract, WhatKeepThrowsLeavesTheFileAsItWas)
{
    this->its.Write(this->path, "a\nb\n");
    const auto file = this->its.files.OpenLocked(this->path);
    const auto failing = [](std::int64_t number, std::string_view) {
        return number < 2 ? false : throw Failure(failure::kOverflow, "the second line");
    };
    EXPECT_EQ(FailureOf([&] { file->KeepLines(failing); }), failure::kOverflow);
    EXPECT_EQ(this->its.Read(this->path), "a\nb\n");
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
    std::string accented;
    for (int count = 0; count < 300; ++count)
        accented += "\xC3\xA9";
    profile.WritePrivateProfileStringA(
        {{"Section", "Plain", std::string(300, 'x')}, {"Section", "Accented", accented}}, this->path);
    const struct {
        std::size_t length;
        std::size_t characters;
    } cases[] = {{256, 255}, {2, 1}, {1, 0}, {0, 0}, {301, 300}, {1000, 300}};
    for (const auto& [length, characters] : cases) {
        const auto value = [&](const char* key) {
            return profile.GetPrivateProfileStringA("Section", key, length, this->path);
        };
        EXPECT_EQ(value("Plain"), std::string(characters, 'x')) << length;
        EXPECT_EQ(value("Accented"), accented.substr(0, 2 * characters)) << length;
    }
}

}  // namespace
}  // namespace platform
