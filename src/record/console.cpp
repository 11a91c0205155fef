#include "record/console.h"

#include <utility>

namespace record {
namespace {

constexpr std::string_view kBeginAgain = "\r\x1B[K";  // back to the line's begin, and erase it

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
    output_.Write(std::string(kBeginAgain) + std::string(text.substr(0, output_.Columns() - 1)));
    progressIsThere_ = true;
}

/// What takes the progress away.
std::string Console::ErasedProgress()
{
    return std::exchange(progressIsThere_, false) ? std::string(kBeginAgain) : "";
}

}  // namespace record
