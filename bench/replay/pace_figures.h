#pragma once

#include <chrono>
#include <vector>

namespace bench {

/// What a receiver's clock says of a feed with one record an interval.
struct PaceFigures {
    double recordsPerSecond = 0;
    double meanErrorPercent = 0;  ///< how much longer the mean interval is than the one asked for
    long lostTicks = 0;           ///< intervals between the first record and the last that brought none
    /// Against the records' own raster, laid through the earliest of them, in milliseconds.
    double lateness50 = 0;
    double lateness99 = 0;
    double lateness999 = 0;
    double gap99 = 0;  ///< between one record and the next, in milliseconds
};

/// At least two arrivals, in order.
[[nodiscard]] PaceFigures FiguresOf(const std::vector<std::chrono::steady_clock::time_point>& arrivals,
                                    std::chrono::milliseconds interval);

}  // namespace bench
