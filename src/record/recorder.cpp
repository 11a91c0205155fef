#include "record/recorder.h"

#include <chrono>
#include <string>
#include <utility>

#include "platform/ansi_code_page.h"

namespace record {
namespace {

constexpr std::chrono::milliseconds kBetweenProgress{200};

/// A date that a recording can hold: the year has four digits, and the database takes it.
bool CanBeKept(platform::DateTime moment)
{
    using namespace std::chrono;
    const auto year = year_month_day(floor<days>(moment)).year();
    return year >= std::chrono::year{100} && year <= std::chrono::year{9999};
}

}  // namespace

Recorder::Recorder(platform::EventLoop& loop, RecordingFile& file, const platform::RegionalFormats& formats,
                   Console& console, const Settings& settings)
    : file_(file),
      formats_(formats),
      console_(console),
      settings_(settings),
      sync_(loop, file.Descriptor()),
      progress_(loop.NewAlarm([this] { ProgressIsDue(); }))
{}

void Recorder::Keep(const CutRecord& record)
{
    if (tally_.records == settings_.mostRecords)
        return;
    file_.Add({.ref = 0,
               .timestamp = TimestampOf(record),
               .datetimestamp = record.arrived,
               .rawtransaction = record.text});
    ++tally_.records;
    tally_.bytes += record.text.size();
    tally_.last = record.arrived;
    CountWhatIsOdd(record);
    if (tally_.records == settings_.mostRecords)
        End();
}

void Recorder::Flush()
{
    file_.Write();
    if (added_ == tally_.records)
        return;
    added_ = tally_.records;
    sync_.Written();
    if (console_.ShowsProgress() && !std::exchange(progressIsSet_, true))
        progress_->Set(std::chrono::steady_clock::now() + kBetweenProgress);
}

void Recorder::Finish()
{
    Flush();
    sync_.Finish();
    file_.Sync();
}

std::optional<platform::DateTime> Recorder::TimestampOf(const CutRecord& record)
{
    if (!settings_.transferTime)
        return record.arrived;
    if (!record.time || record.time->empty())
        return std::nullopt;
    const auto time = formats_.DateOrTime(platform::FromAnsi(*record.time));
    if (time && CanBeKept(*time))
        return time;
    if (tally_.unreadableTimes++ == 0)
        console_.Say("the time \"" + platform::FromAnsi(*record.time) + "\" cannot be read; see --locale");
    return std::nullopt;
}

void Recorder::CountWhatIsOdd(const CutRecord& record)
{
    if (record.end == RecordEnd::kTooLong && tally_.tooLong++ == 0)
        console_.Say("a record is longer than 16 MiB and was cut there");
    if (record.end == RecordEnd::kCutOff)
        ++tally_.cutOff;
    if (settings_.transferTime && !record.time)
        ++tally_.withoutTime;
}

void Recorder::ProgressIsDue()
{
    progressIsSet_ = false;
    console_.ShowProgress(ProgressText(tally_, sender_));
}

}  // namespace record
