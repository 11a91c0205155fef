#include "platform/posix/standard_error.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/system_calls.h"

namespace platform::posix {
namespace {

FileDescriptor OpenedAnew()
{
    struct stat status {};
    if (::fstat(STDERR_FILENO, &status) != 0 || (!S_ISFIFO(status.st_mode) && !S_ISCHR(status.st_mode)))
        return {};
    return FileDescriptor(::open("/proc/self/fd/2", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

/// Bytes written; -1 with errno. A socket takes no bytes that it has no room for; a file always has room, or none ever.
ssize_t WriteNow(int descriptor, std::string_view text)
{
    const ssize_t sent = ::send(descriptor, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    return sent >= 0 || errno != ENOTSOCK ? sent : ::write(descriptor, text.data(), text.size());
}

bool HasRoomWithin(int descriptor, std::chrono::milliseconds patience)
{
    pollfd writable{.fd = descriptor, .events = POLLOUT, .revents = 0};
    const int longest = static_cast<int>(patience.count());
    return Uninterrupted([&] { return ::poll(&writable, 1, longest); }) > 0 &&
           (writable.revents & POLLOUT) != 0;
}

}  // namespace

StandardError::StandardError()
    : own_(OpenedAnew()), descriptor_(own_.IsOpen() ? own_.Number() : STDERR_FILENO)
{}

bool StandardError::IsTerminal() const
{
    return ::isatty(descriptor_) == 1;
}

std::size_t StandardError::Columns() const
{
    constexpr std::size_t kUsual = 80;
    winsize size{};
    const bool known = ::ioctl(descriptor_, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kUsual;
}

void StandardError::Write(std::string_view text)
{
    WriteWithin(text, std::chrono::milliseconds::zero());
}

void StandardError::WriteWithin(std::string_view text, std::chrono::milliseconds patience)
{
    while (!text.empty() && HasRoomWithin(descriptor_, patience)) {
        const ssize_t written = Uninterrupted([&] { return WriteNow(descriptor_, text); });
        if (written <= 0)
            return;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

void OpenStandardDescriptors()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", O_RDWR));
    }
}

}  // namespace platform::posix
