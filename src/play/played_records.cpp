#include "play/played_records.h"

#include <utility>

#include "platform/conversions.h"
#include "platform/failure.h"

namespace player {

using platform::Failure;

PlayedRecords::PlayedRecords(std::unique_ptr<platform::RecordSet> all, const RecordSpan& span,
                             std::optional<std::int64_t> loops, const RecordEvents& events)
    : all_(std::move(all)), span_(span), loops_(loops), events_(events)
{
    GoToFirst();
}

bool PlayedRecords::AtEOF() const
{
    return loops_ && loop_ == *loops_;
}

platform::Value PlayedRecords::Field(const std::string& column) const
{
    if (AtEOF())
        throw Failure(platform::failure::kNoCurrentRecord, "There is no current record");
    try {
        return all_->Field(column);
    } catch (...) {
        if (platform::SameName(column, "rawtransaction"))
            events_.unreadable();
        throw;
    }
}

void PlayedRecords::MoveNext()
{
    if (AtEOF())
        throw Failure(platform::failure::kNoCurrentRecord, "There is no current record");
    if (events_.playsAgain())
        return;
    const bool spanEnds = ++position_ == span_.count;
    if (spanEnds) {
        ++loop_;
        GoToFirst();
    } else {
        all_->MoveNext();
    }
    events_.movedOn(*this, spanEnds);
}

void PlayedRecords::MoveFirst()
{
    loop_ = 0;
    GoToFirst();
}

void PlayedRecords::GoToFirst()
{
    all_->MoveFirst();
    for (position_ = 0; position_ < span_.first; ++position_)
        all_->MoveNext();
    position_ = 0;
}

}  // namespace player
