#include "support/run_command.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <stdexcept>

CommandOutcome RunCommand(const std::string& command)
{
    std::FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("cannot run " + command);
    CommandOutcome outcome;
    std::array<char, 65536> buffer{};
    for (std::size_t size = 1; size > 0;) {
        size = std::fread(buffer.data(), 1, buffer.size(), pipe);
        outcome.output.append(buffer.data(), size);
    }
    outcome.exitCode = WEXITSTATUS(pclose(pipe));
    return outcome;
}
