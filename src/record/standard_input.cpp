#include "record/standard_input.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "platform/failure.h"
#include "platform/posix/system_calls.h"

namespace record {
namespace {

constexpr std::size_t kMostARead = std::size_t{128} << 10;

/// The descriptor may be shared with other programs, so it is not made non-blocking: it is asked first.
bool CanBeRead()
{
    pollfd asked{.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    return platform::Uninterrupted([&] { return ::poll(&asked, 1, 0); }) != 0;
}

/// Such a one reports EIO when it was hung up, or as a pseudo-terminal without its other end.
bool IsTerminalOrDevice()
{
    struct stat status {};
    return ::fstat(STDIN_FILENO, &status) == 0 && S_ISCHR(status.st_mode);
}

/// Files and /dev/null are always ready, and the event loop cannot watch them.
bool CanBeWatched()
{
    struct stat status {};
    ::fstat(STDIN_FILENO, &status);
    const bool isTerminalOrLine = S_ISCHR(status.st_mode) && ::isatty(STDIN_FILENO) == 1;
    return isTerminalOrLine || S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode);
}

}  // namespace

StandardInput::StandardInput(const Surroundings& surroundings)
    : around_(surroundings), buffer_(kMostARead), intake_(surroundings, [this] { return Read(); })
{
    around_.recorder.SetSender("standard input");
    if (CanBeWatched())
        readable_ = around_.loop.Observe(STDIN_FILENO, platform::Readiness::kReadable, [this] { Read(); });
    else
        around_.loop.Post([this] { ReadFileOn(); });
}

StreamIntake::Outcome StandardInput::Read()
{
    if (around_.recorder.HasEnded() || !CanBeRead())
        return StreamIntake::Outcome::kNothing;
    const ssize_t count =
        platform::Uninterrupted([this] { return ::read(STDIN_FILENO, buffer_.data(), buffer_.size()); });
    if (count > 0) {
        intake_.Add(std::string_view(buffer_.data(), static_cast<std::size_t>(count)));
        intake_.Flush();
        return StreamIntake::Outcome::kRead;
    }
    if (count < 0 && errno == EAGAIN)
        return StreamIntake::Outcome::kNothing;
    if (count < 0 && !(errno == EIO && IsTerminalOrDevice()))
        throw platform::Failure(platform::failure::kPathFileAccess,
                                "Standard input cannot be read: " + platform::LastError().message());
    intake_.Finish();
    around_.recorder.End();
    return StreamIntake::Outcome::kEnded;
}

void StandardInput::ReadFileOn()
{
    Read();
    if (!around_.recorder.HasEnded())
        around_.loop.Post([this] { ReadFileOn(); });
}

}  // namespace record
