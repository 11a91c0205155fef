#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// A folder of its own for one test, removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        std::string name = testing::TempDir() + "/trellivan-files-XXXXXX";
        path_ = ::mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path_); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    [[nodiscard]] std::string Path(const std::string& name = "") const { return path_ + "/" + name; }

    /// Every name in the folder but those given.
    [[nodiscard]] std::vector<std::string> NamesBut(const std::string& expected) const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            if (entry.path().filename() != expected)
                names.push_back(entry.path().filename());
        return names;
    }

private:
    std::string path_;
};

inline std::string Content(const std::string& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void Fill(const std::string& path, const std::string& content)
{
    std::ofstream(path, std::ios::binary) << content;
}
