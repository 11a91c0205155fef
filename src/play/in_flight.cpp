#include "play/in_flight.h"

#include <algorithm>
#include <utility>

namespace player {

InFlight::InFlight(std::function<std::uint64_t()> unacknowledged) : unacknowledged_(std::move(unacknowledged))
{}

void InFlight::Add(std::size_t bytes)
{
    sizes_.push_back(bytes);
    bytes_ += bytes;
    if (sizes_.size() >= askAt_)
        ForgetArrived();
}

std::int64_t InFlight::RecordsIn(std::uint64_t lastBytes) const
{
    std::int64_t records = 0;
    std::uint64_t covered = 0;
    for (auto size = sizes_.rbegin(); size != sizes_.rend() && covered < lastBytes; ++size) {
        covered += *size;
        records += *size > 0 ? 1 : 0;
    }
    return records;
}

void InFlight::Clear()
{
    sizes_.clear();
    bytes_ = 0;
    askAt_ = kFewest;
}

void InFlight::ForgetArrived()
{
    const std::uint64_t unacknowledged = unacknowledged_();
    while (!sizes_.empty() && bytes_ - sizes_.front() >= unacknowledged) {
        bytes_ -= sizes_.front();
        sizes_.pop_front();
    }
    // A peer that takes nothing must not cost a question for each record.
    askAt_ = std::max(kFewest, 2 * sizes_.size());
}

}  // namespace player
