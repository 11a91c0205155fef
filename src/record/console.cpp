#include "record/console.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <string>

namespace record {
namespace {

constexpr std::string_view kBeginAgain = "\r\x1B[K";  // back to the line's begin, and erase it

/// Writes what standard error takes now.
void Write(std::string_view text)
{
    pollfd ready{.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};
    if (::poll(&ready, 1, 0) == 1 && (ready.revents & POLLOUT) != 0)
        static_cast<void>(::write(STDERR_FILENO, text.data(), text.size()));
}

std::size_t Columns()
{
    constexpr std::size_t kUsual = 80;
    winsize size{};
    const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kUsual;
}

}  // namespace

Console::Console(Loudness loudness)
    : isQuiet_(loudness == Loudness::kQuiet), showsProgress_(!isQuiet_ && ::isatty(STDERR_FILENO) == 1)
{}

void Console::Say(std::string_view message)
{
    if (!isQuiet_)
        SayInAnyCase(message);
}

void Console::SayInAnyCase(std::string_view message)
{
    Write((progressIsThere_ ? std::string(kBeginAgain) : "") + "record_feed: " + std::string(message) + "\n");
    progressIsThere_ = false;
}

void Console::ShowProgress(std::string_view text)
{
    if (!showsProgress_)
        return;
    Write(std::string(kBeginAgain) + std::string(text.substr(0, Columns() - 1)));
    progressIsThere_ = true;
}

}  // namespace record
