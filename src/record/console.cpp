#include "record/console.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <utility>

namespace record {
namespace {

constexpr std::string_view kBeginAgain = "\r\x1B[K";  // back to the line's begin, and erase it

std::size_t Columns()
{
    constexpr std::size_t kUsual = 80;
    winsize size{};
    const bool known = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return known ? size.ws_col : kUsual;
}

}  // namespace

Console::Console(Loudness loudness)
    : isQuiet_(loudness == Loudness::kQuiet), showsProgress_(!isQuiet_ && output_.IsTerminal())
{}

Console::~Console()
{
    output_.Write(ErasedProgress());
}

void Console::Say(std::string_view message, std::chrono::milliseconds patience)
{
    if (!isQuiet_)
        output_.WriteWithin(ErasedProgress() + "record_feed: " + std::string(message) + "\n", patience);
}

void Console::ShowProgress(std::string_view text)
{
    if (!showsProgress_)
        return;
    output_.Write(std::string(kBeginAgain) + std::string(text.substr(0, Columns() - 1)));
    progressIsThere_ = true;
}

/// What takes the progress away.
std::string Console::ErasedProgress()
{
    return std::exchange(progressIsThere_, false) ? std::string(kBeginAgain) : "";
}

}  // namespace record
