#pragma once

#include <string>

/// What a shell command prints, its error output included, and its exit code.
struct CommandOutcome {
    std::string output;
    int exitCode = 0;
};

[[nodiscard]] CommandOutcome RunCommand(const std::string& command);
