#include "record/stream_intake.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace record {

using std::chrono::steady_clock;

StreamIntake::StreamIntake(const Surroundings& surroundings, ReadOn readOn)
    : around_(surroundings),
      readOn_(std::move(readOn)),
      cutter_(around_.options.rule, [this](const CutRecord& record) { around_.recorder.Keep(record); }),
      alarm_(around_.loop.NewAlarm([this] { PauseIsLongEnough(); }))
{}

std::optional<std::size_t> StreamIntake::Add(std::string_view bytes)
{
    const auto now = steady_clock::now();
    return cutter_.Add(bytes, {around_.clock.Now(), std::min(now, cameBefore_.value_or(now))});
}

void StreamIntake::Flush()
{
    around_.recorder.Flush();
    SetAlarm();
}

void StreamIntake::Finish()
{
    cutter_.Finish();
    Flush();
}

/// What lies there unread came in time as far as anybody can tell: perhaps this program was held up.
void StreamIntake::PauseIsLongEnough()
{
    cameBefore_ = cutter_.Deadline().value_or(steady_clock::now()) - steady_clock::duration(1);
    if (readOn_() == Outcome::kEnded)
        return;
    cameBefore_.reset();
    cutter_.EndIfDue(steady_clock::now());
    Flush();
}

void StreamIntake::SetAlarm()
{
    if (const auto deadline = cutter_.Deadline())
        alarm_->Set(*deadline);
    else
        alarm_->Clear();
}

}  // namespace record
