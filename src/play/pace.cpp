#include "play/pace.h"

#include "play/recorded_time.h"

namespace player {
namespace {

constexpr int kTicksAtOnceUnpaced = 64;

std::unique_ptr<platform::Schedule> TicksFor(const Options& options, const Phase& phase)
{
    if (options.recorded)
        return std::make_unique<RecordedSchedule>(*options.recorded, phase);
    if (options.unpaced)
        return std::make_unique<UnpacedSchedule>();
    return std::make_unique<PacedSchedule>(phase);
}

}  // namespace

Pace::Pace(const Options& options, const Phase& phase, const platform::RegionalFormats& formats)
    : formats_(formats),
      isUnpaced_(options.unpaced),
      ticks_(TicksFor(options, phase)),
      measured_(*ticks_, [this] { return feedHasEnded_; })
{
    recorded_ = dynamic_cast<RecordedSchedule*>(ticks_.get());
}

int Pace::TicksAtOnce() const
{
    return isUnpaced_ ? kTicksAtOnceUnpaced : 1;
}

void Pace::StandsAt(const platform::RecordSet& records, bool beginsAgain)
{
    feedHasEnded_ = records.AtEOF();
    if (recorded_ != nullptr && !feedHasEnded_)
        recorded_->NextRecord(RecordedTimeOf(records, formats_), beginsAgain);
}

}  // namespace player
