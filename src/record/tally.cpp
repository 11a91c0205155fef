#include "record/tally.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace record {
namespace {

std::string Counted(std::uint64_t count, const char* what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string ClockTime(platform::DateTime moment)
{
    using namespace std::chrono;
    const hh_mm_ss time(floor<seconds>(moment - floor<days>(moment)));
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d", static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()));
    return text.data();
}

}  // namespace

std::string ProgressText(const Tally& tally, const std::string& sender)
{
    std::string text = Counted(tally.records, "record") + ", " + Counted(tally.bytes, "byte");
    if (tally.last)
        text += ", last " + ClockTime(*tally.last);
    if (!sender.empty())
        text += " from " + sender;
    return text;
}

std::vector<std::string> SummaryLines(const Tally& tally, const std::string& path)
{
    std::vector<std::string> lines = {Counted(tally.records, "record") + ", " + Counted(tally.bytes, "byte") +
                                      " in " + path};
    const auto add = [&](std::uint64_t count, const char* what, const char* remark) {
        if (count > 0)
            lines.push_back(Counted(count, what) + remark);
    };
    add(tally.tooLong, "record", " cut because of more than 16 MiB");
    add(tally.cutOff, "record", " without the end that was asked for");
    add(tally.withoutTime, "record", " without a transfer time; the timestamp is empty");
    add(tally.unreadableTimes, "transfer time", " that cannot be read; the timestamp is empty");
    add(tally.lostDatagrams, "datagram", " lost: they came faster than they could be recorded");
    if (tally.notPassedOn > 0)
        lines.push_back("at least " + Counted(tally.notPassedOn, "byte") + " did not reach the receiver");
    return lines;
}

}  // namespace record
