#include "play/report_file.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>

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
        // So much never blocks where there is room at all.
        const bool hasRoom = ::poll(&output, 1, kBetweenQuestions) > 0;
        const ssize_t written =
            hasRoom ? ::write(output.fd, rest.data(), std::min<std::size_t>(rest.size(), PIPE_BUF)) : 0;
        if (written < 0 && errno != EINTR && errno != EAGAIN)
            return false;
        if (!hasRoom && !goesOn())
            return false;
        rest.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

}  // namespace player
