#include "play/report_file.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>

#include "platform/posix/system_calls.h"
#include "play/usage_error.h"

namespace player {
namespace {

constexpr int kReadableByAll = 0644;
constexpr int kBetweenQuestions = 100;  // milliseconds

platform::FileDescriptor Open(const std::string& path)
{
    if (path == "-")
        return {};
    // A named pipe that nobody reads is no place for a report.
    platform::FileDescriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, kReadableByAll));
    if (!file.IsOpen())
        throw UsageError("The report " + path + " cannot be written: " + std::strerror(errno));
    return file;
}

/// So much never blocks where there is room at all.
ssize_t WriteSome(int descriptor, std::string_view text)
{
    const std::size_t size = std::min<std::size_t>(text.size(), PIPE_BUF);
    return platform::Uninterrupted([&] { return ::write(descriptor, text.data(), size); });
}

}  // namespace

ReportFile::ReportFile(const std::string& path) : file_(Open(path)) {}

void ReportFile::Clear()
{
    // A pipe has no length, and nothing earlier either.
    if (file_.IsOpen())
        static_cast<void>(::ftruncate(file_.Number(), 0) == 0);
}

bool ReportFile::Write(const std::string& report, const std::function<bool()>& goesOn)
{
    pollfd output{.fd = file_.IsOpen() ? file_.Number() : STDOUT_FILENO, .events = POLLOUT, .revents = 0};
    std::string_view rest = report;
    while (!rest.empty()) {
        const int ready = platform::Uninterrupted([&] { return ::poll(&output, 1, kBetweenQuestions); });
        const ssize_t written = ready > 0 ? WriteSome(output.fd, rest) : ready;
        if (written < 0 && errno != EAGAIN)
            return false;
        if (written <= 0 && !goesOn())
            return false;
        rest.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

}  // namespace player
