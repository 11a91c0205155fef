#include "support/temporary_folder.h"

#include <stdlib.h>

#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() : path_((fs::temp_directory_path() / "trellivan-XXXXXX").string())
{
    if (mkdtemp(path_.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::vector<std::string> TemporaryFolder::NamesBut(const std::string& expected) const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_))
        if (entry.path().filename() != expected)
            names.push_back(entry.path().filename());
    return names;
}
