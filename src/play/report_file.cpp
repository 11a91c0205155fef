#include "play/report_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "play/usage_error.h"

namespace player {
namespace {

constexpr int kReadableByAll = 0644;

platform::FileDescriptor Open(const std::string& path)
{
    if (path == "-")
        return {};
    platform::FileDescriptor file(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kReadableByAll));
    if (!file.IsOpen())
        throw UsageError("The report " + path + " cannot be written: " + std::strerror(errno));
    return file;
}

}  // namespace

ReportFile::ReportFile(const std::string& path) : file_(Open(path)) {}

bool ReportFile::Write(const std::string& report)
{
    const int descriptor = file_.IsOpen() ? file_.Number() : STDOUT_FILENO;
    std::string_view rest = report;
    while (!rest.empty()) {
        const ssize_t written = ::write(descriptor, rest.data(), rest.size());
        if (written < 0 && errno != EINTR)
            return false;
        rest.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

}  // namespace player
