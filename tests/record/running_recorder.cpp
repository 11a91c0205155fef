#include "record/running_recorder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

namespace {

constexpr std::chrono::seconds kDeadline{30};
constexpr std::chrono::milliseconds kLook{1};

}  // namespace

bool ComesTrue(const std::function<bool()>& condition)
{
    const auto deadline = std::chrono::steady_clock::now() + kDeadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(kLook);
    }
    return true;
}

RunningRecorder::RunningRecorder(const std::string& options, const std::string& before)
{
    std::array<int, 2> pipe{};
    EXPECT_EQ(0, ::pipe2(pipe.data(), O_CLOEXEC));
    errors_ = pipe[0];
    ::fcntl(errors_, F_SETFL, O_NONBLOCK);
    const std::string command = before + "exec " + RECORD_FEED + " " + options;
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(pipe[1], STDERR_FILENO);
        // The sanitizer keeps freed memory for a while. Where the memory is measured, that would be most of it.
        ::setenv("ASAN_OPTIONS", "quarantine_size_mb=1", 1);
        ::execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(pipe[1]);
}

RunningRecorder::~RunningRecorder()
{
    if (process_ > 0)
        End(SIGKILL);
    ::close(errors_);
}

const std::string& RunningRecorder::Said()
{
    std::array<char, 4096> buffer{};
    for (ssize_t count = 1; count > 0;) {
        count = ::read(errors_, buffer.data(), buffer.size());
        if (count > 0)
            said_.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return said_;
}

bool RunningRecorder::Says(const std::string& text)
{
    const bool said = ComesTrue([&] { return Said().find(text) != std::string::npos; });
    EXPECT_TRUE(said) << "\"" << text << "\" was not said, but:\n" << Said();
    return said;
}

std::uint16_t RunningRecorder::Port()
{
    const std::string before = "on port ";
    if (!Says(before))
        return 0;
    return static_cast<std::uint16_t>(std::stoi(Said().substr(Said().find(before) + before.size())));
}

int RunningRecorder::End(int signal)
{
    if (signal != 0)
        Signal(signal);
    int status = 0;
    const bool ended = ComesTrue([&] { return ::waitpid(process_, &status, WNOHANG) == process_; });
    EXPECT_TRUE(ended);
    process_ = ended ? -1 : process_;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

std::size_t RunningRecorder::ResidentBytes() const
{
    std::ifstream statistics("/proc/" + std::to_string(process_) + "/statm");
    std::size_t allPages = 0;
    std::size_t residentPages = 0;
    statistics >> allPages >> residentPages;
    return residentPages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}
