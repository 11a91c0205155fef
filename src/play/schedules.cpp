#include "play/schedules.h"

#include <cstdint>

namespace player {
namespace {

using Step = std::chrono::duration<std::int64_t, std::ratio<1, 4000>>;

}  // namespace

Time Phase::PointBefore(Time moment, std::chrono::nanoseconds interval) const
{
    if (!origin)
        return moment;
    const auto behind = std::chrono::floor<Step>(interval * share);
    const Time first = *origin + behind - interval;
    return first + (moment - first) / interval * interval;
}

}  // namespace player
