#include "play/schedules.h"

namespace player {

Time Phase::PointBefore(Time moment, std::chrono::nanoseconds interval) const
{
    if (!origin)
        return moment;
    const auto behind = std::chrono::duration_cast<std::chrono::nanoseconds>(interval * share);
    const Time first = *origin + behind - interval;
    return first + (moment - first) / interval * interval;
}

}  // namespace player
