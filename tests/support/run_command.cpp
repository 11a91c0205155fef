#include "support/run_command.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

#include "support/files.h"
#include "support/test_loop.h"

RunningCommand::RunningCommand(const std::string& command)
    : output_(::memfd_create("output", MFD_CLOEXEC)), process_(::fork())
{
    if (process_ != 0)
        return;
    ::dup2(output_.Number(), STDOUT_FILENO);
    ::dup2(output_.Number(), STDERR_FILENO);
    ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    ::_exit(127);
}

RunningCommand::~RunningCommand()
{
    if (process_ > 0)
        static_cast<void>(End(SIGKILL));
}

int RunningCommand::End(int signal)
{
    if (signal != 0)
        Signal(signal);
    int status = 0;
    const bool ends = noLoop.WaitFor([&] { return ::waitpid(process_, &status, WNOHANG) != 0; });
    EXPECT_TRUE(ends) << Said();
    process_ = ends ? -1 : process_;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

std::string RunningCommand::Said() const
{
    return ReadFile("/proc/self/fd/" + std::to_string(output_.Number()));
}

bool RunningCommand::Says(const std::string& text) const
{
    const bool said = noLoop.WaitFor([&] { return Said().find(text) != std::string::npos; });
    EXPECT_TRUE(said) << "\"" << text << "\" was not said, but:\n" << Said();
    return said;
}

std::size_t RunningCommand::ResidentBytes() const
{
    std::ifstream statistics("/proc/" + std::to_string(process_) + "/statm");
    std::size_t allPages = 0;
    std::size_t residentPages = 0;
    statistics >> allPages >> residentPages;
    return residentPages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

CommandOutcome RunCommand(const std::string& command)
{
    RunningCommand running(command);
    const int exitCode = running.End();
    return {running.Said(), exitCode};
}
