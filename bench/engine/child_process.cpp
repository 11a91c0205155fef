#include "engine/child_process.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>

#include "platform/posix/file_descriptor.h"

namespace bench {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Does not return: what the parent has to do at its end is not done twice.
[[noreturn]] void RunAndExit(const std::function<void()>& work)
{
    try {
        work();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        _exit(EXIT_FAILURE);
    }
    _exit(EXIT_SUCCESS);
}

/// Runs the work in a child and waits for it.
long PeakKilobytesOf(const std::function<void()>& work)
{
    const pid_t child = fork();
    if (child < 0)
        throw std::runtime_error("no child process");
    if (child == 0)
        RunAndExit(work);
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != EXIT_SUCCESS)
        throw std::runtime_error("the work failed");
    return usage.ru_maxrss;
}

[[noreturn]] void BecomeProgram(const std::vector<std::string>& words)
{
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const platform::FileDescriptor nowhere(open("/dev/null", O_WRONLY | O_CLOEXEC));
    dup2(nowhere.Number(), STDOUT_FILENO);
    execvp(arguments[0], arguments.data());
    throw std::runtime_error("cannot run " + words[0]);
}

}  // namespace

Cost CostOf(const std::function<void()>& work)
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    const platform::FileDescriptor result(ends[0]);
    const platform::FileDescriptor report(ends[1]);
    Cost cost;
    cost.peakKilobytes = PeakKilobytesOf([&] {
        const Clock::time_point start = Clock::now();
        work();
        const double seconds = SecondsSince(start);
        if (write(report.Number(), &seconds, sizeof seconds) != sizeof seconds)
            throw std::runtime_error("the time cannot be reported");
    });
    if (read(result.Number(), &cost.seconds, sizeof cost.seconds) != sizeof cost.seconds)
        throw std::runtime_error("no time was reported");
    return cost;
}

Cost CostOfProgram(const std::vector<std::string>& words)
{
    const Clock::time_point start = Clock::now();
    const long peak = PeakKilobytesOf([&] { BecomeProgram(words); });
    return {SecondsSince(start), peak};
}

}  // namespace bench
