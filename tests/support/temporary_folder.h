#pragma once

#include <string>
#include <vector>

/// A folder that goes with the test.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The path of something in the folder; without a name that of the folder, with a slash behind it.
    [[nodiscard]] std::string Path(const std::string& name = "") const { return path_ + "/" + name; }

    /// Every name in the folder but this one.
    [[nodiscard]] std::vector<std::string> NamesBut(const std::string& expected) const;

private:
    std::string path_;
};
