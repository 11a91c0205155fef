#pragma once

#include <sys/types.h>

#include <csignal>
#include <cstdint>
#include <functional>
#include <string>

/// True as soon as the condition holds; false when it does not within a time that nothing here takes.
[[nodiscard]] bool ComesTrue(const std::function<bool()>& condition);

/// record_feed at work in a process of its own. It goes with this object.
class RunningRecorder {
public:
    /// The options as a shell has them, the recording's path among them. What the shell command `before` does
    /// is done first, in the same process; it ends with a semicolon or a pipe.
    explicit RunningRecorder(const std::string& options, const std::string& before = "");
    ~RunningRecorder();
    RunningRecorder(const RunningRecorder&) = delete;
    RunningRecorder& operator=(const RunningRecorder&) = delete;

    /// Waits until it has said this. False when it does not.
    [[nodiscard]] bool Says(const std::string& text);

    /// The port at which it waits.
    [[nodiscard]] std::uint16_t Port();

    void Signal(int signal) const { ::kill(process_, signal); }

    /// Waits for its end, after a signal if one is given: the exit status, or the number of the signal that killed
    /// it and 128.
    int End(int signal = 0);

    /// All that it has said.
    [[nodiscard]] const std::string& Said();

    /// The memory that it holds, in bytes.
    [[nodiscard]] std::size_t ResidentBytes() const;

private:
    pid_t process_ = -1;
    int errors_ = -1;
    std::string said_;
};
