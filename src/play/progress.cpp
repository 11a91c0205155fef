#include "play/progress.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <utility>

#include "play/report.h"

namespace player {
namespace {

constexpr std::chrono::seconds kBetweenLines{1};
constexpr const char* kBeginOfLine = "\r\x1b[K";  // and erases it

std::string InMinutes(std::chrono::seconds time)
{
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%lld:%02lld", static_cast<long long>(time.count() / 60),
                  static_cast<long long>(time.count() % 60));
    return text.data();
}

/// As long as the records so far have taken, for each that is left.
std::string Left(const Progress& now, std::chrono::seconds elapsed)
{
    if (!now.total || now.records == 0)
        return "";
    const auto left = static_cast<double>(*now.total - now.records) / static_cast<double>(now.records);
    return ", " + InMinutes(std::chrono::seconds(std::llround(left * static_cast<double>(elapsed.count())))) +
           " left";
}

}  // namespace

std::string ProgressText(const Progress& now, double lately, std::chrono::seconds elapsed)
{
    std::string text;
    if (now.tills > 1)
        text = Grouped(now.playing) + " of " + Grouped(now.tills) + " tills play, " + Grouped(now.waiting) +
               " wait, ";
    else
        text = Grouped(now.records) + (now.total ? " of " + Grouped(*now.total) : "") + " records, ";
    return text + Grouped(std::llround(lately)) + " records/s, " + InMinutes(elapsed) + " elapsed" +
           Left(now, elapsed) + ", " + Counted(now.reconnections, "reconnection");
}

ProgressLine::ProgressLine(platform::posix::StandardError& terminal, platform::EventLoop& loop,
                           std::function<Progress()> now)
    : terminal_(terminal), now_(std::move(now)), next_(loop.NewAlarm([this] { Show(); }))
{}

void ProgressLine::Start()
{
    started_ = Clock::now();
    shown_ = started_;
    next_->Set(started_ + kBetweenLines);
}

void ProgressLine::Clear()
{
    terminal_.Write(kBeginOfLine);
}

void ProgressLine::Show()
{
    const auto time = Clock::now();
    const Progress now = now_();
    const double passed = std::chrono::duration<double>(time - shown_).count();
    const double lately = static_cast<double>(now.records - recordsShown_) / passed;
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(time - started_);
    terminal_.Write(kBeginOfLine + ProgressText(now, lately, elapsed).substr(0, terminal_.Columns() - 1));
    shown_ = time;
    recordsShown_ = now.records;
    next_->Set(time + kBetweenLines);
}

}  // namespace player
