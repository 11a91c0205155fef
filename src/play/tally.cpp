#include "play/tally.h"

namespace player {

void Tally::HandedOver(std::size_t bytes, bool acknowledged)
{
    if (unreadable_)
        return;
    handedOver_ = true;
    ++records_;
    last_ = static_cast<std::int64_t>(bytes);
    bytes_ += *last_;
    if (acknowledged)
        inFlight_.Add(bytes);
}

void Tally::MovedOn()
{
    refused_ += handedOver_ ? 0 : 1;
    unreadable_ = false;
    handedOver_ = false;
}

void Tally::Dropped()
{
    if (!last_)
        return;
    --records_;
    bytes_ -= *last_;
    ++refused_;
    last_.reset();
}

void Tally::Connected()
{
    ++connections_;
    inFlight_.Clear();
}

void Tally::Lost(std::uint64_t unacknowledged)
{
    inDoubt_ += inFlight_.RecordsIn(unacknowledged);
    inFlight_.Clear();
}

}  // namespace player
