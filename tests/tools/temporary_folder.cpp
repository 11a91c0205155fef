#include "tools/temporary_folder.h"

#include <stdlib.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

TemporaryFolder::TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "tools-XXXXXX").string())
{
    if (mkdtemp(path_.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Outcome RunCommand(const std::string& command)
{
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("cannot run " + command);
    Outcome outcome{};
    std::array<char, 65536> buffer{};
    for (std::size_t size = 1; size > 0;) {
        size = std::fread(buffer.data(), 1, buffer.size(), pipe);
        outcome.output.append(buffer.data(), size);
    }
    outcome.exitCode = WEXITSTATUS(pclose(pipe));
    return outcome;
}
