#include "platform/sockets/paced_errors.h"

#include <utility>

namespace platform::sockets {

PacedErrors::PacedErrors(EventGate& gate, EventLoop& loop, std::chrono::milliseconds apart,
                         std::function<void(const Failure&)> raise)
    : apart_(apart),
      raise_(std::move(raise)),
      gated_(gate, loop),
      alarm_(loop.NewAlarm([this] { gated_.Enter([this] { RaiseHeld(); }); }))
{}

void PacedErrors::Report(Failure reason)
{
    held_ = std::move(reason);
    if (Clock::now() >= earliest_)
        RaiseHeld();
    else
        alarm_->Set(earliest_);
}

void PacedErrors::Drop()
{
    held_.reset();
    alarm_->Clear();
    gated_.Drop();
}

void PacedErrors::RaiseHeld()
{
    const Failure reason = std::move(*held_);
    Drop();
    earliest_ = Clock::now() + apart_;
    raise_(reason);
}

}  // namespace platform::sockets
