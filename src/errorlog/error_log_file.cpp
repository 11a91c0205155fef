#include "errorlog/error_log_file.h"

#include <chrono>
#include <string_view>

#include "platform/ansi_code_page.h"

namespace trellivan {
namespace {

using platform::DateTime;
using platform::LockedTextFile;
using platform::RegionalFormats;

/// Tells which lines are too old by the date in front of their first blank.
class AgeLimit {
public:
    AgeLimit(DateTime cutoff, const RegionalFormats& formats) : cutoff_(cutoff), formats_(formats) {}

    [[nodiscard]] bool Keeps(std::string_view line)
    {
        const std::size_t blank = line.find(' ');
        if (blank == std::string_view::npos || blank == 0)
            return true;
        const std::string_view text = line.substr(0, blank);
        // Most lines have the date of the line before, and reading a date takes longer than all else here.
        if (text != lastText_) {
            lastKept_ = KeepsDate(text);
            lastText_ = text;
        }
        return lastKept_;
    }

private:
    [[nodiscard]] bool KeepsDate(std::string_view text) const
    {
        const auto moment = formats_.DateOrTime(platform::FromAnsi(text));
        const bool hasDate = moment && std::chrono::floor<std::chrono::days>(*moment) != platform::DayZero();
        return !hasDate || *moment > cutoff_;
    }

    DateTime cutoff_;
    const RegionalFormats& formats_;
    std::string lastText_;
    bool lastKept_ = true;
};

void KeepNewestLines(LockedTextFile& log, std::int64_t limit)
{
    const std::int64_t surplus = log.CountLines() - limit;
    if (surplus > 0)
        log.KeepLines([&](std::int64_t number, std::string_view) { return number > surplus; });
}

void DropOldLines(LockedTextFile& log, AgeLimit limit)
{
    log.KeepLines([&](std::int64_t, std::string_view line) { return limit.Keeps(line); });
}

}  // namespace

void ErrorLogFile::Write(const std::string& path, const platform::ErrorRecord& record)
{
    const std::string now = GeneralDate(clock_.Now(), formats_);
    files_.Append(path, platform::ToAnsi(now + "|" + record.number + "|" + record.description + "|" +
                                         record.procedure + "\r\n"));
}

void ErrorLogFile::Trim(const std::string& path, std::int32_t lineLimit, platform::DateTime ageCutoff)
{
    try {
        if (!files_.FileExists(path))
            return;
        const auto log = files_.OpenLocked(path);
        if (lineLimit >= 0)
            KeepNewestLines(*log, lineLimit);
        if (ageCutoff > platform::kNoLogAgeLimit)
            DropOldLines(*log, AgeLimit(ageCutoff, formats_));
    } catch (...) {
        // The program runs as well with a long log, and a record about it would make it longer still.
    }
}

}  // namespace trellivan
