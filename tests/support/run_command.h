#pragma once

#include <sys/types.h>

#include <csignal>
#include <string>

#include "platform/posix/file_descriptor.h"

/// A shell command at work in a process of its own, which goes with this object. What it prints is kept, its error
/// output included.
class RunningCommand {
public:
    explicit RunningCommand(const std::string& command);
    ~RunningCommand();
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    void Signal(int signal) const { ::kill(process_, signal); }

    /// Waits for its end, after a signal if one is given: the exit status, or the number of the signal that killed
    /// it and 128.
    [[nodiscard]] int End(int signal = 0);

    /// All that it has printed.
    [[nodiscard]] std::string Said() const;
    /// Waits until it has printed this. False when it does not.
    [[nodiscard]] bool Says(const std::string& text) const;

    /// The memory that it holds, in bytes.
    [[nodiscard]] std::size_t ResidentBytes() const;

private:
    platform::FileDescriptor output_;
    pid_t process_ = -1;
};

/// What a shell command prints, its error output included, and its exit code.
struct CommandOutcome {
    std::string output;
    int exitCode = 0;
};

[[nodiscard]] CommandOutcome RunCommand(const std::string& command);
