#pragma once

#include <chrono>
#include <vector>

namespace bench {

/// What a receiver's clock says of a feed with one record an interval.
struct PaceFigures {
    double recordsPerSecond = 0;
    /// How much longer the mean interval is than the one asked for, and how many records are missing at the end. Both
    /// compare the middle of the first tenth of the records with that of the last, so that one late record at an end
    /// does not count.
    double meanErrorPercent = 0;
    long lostTicks = 0;
    /// Against the records' own raster, laid through the earliest of them, in milliseconds.
    double lateness50 = 0;
    double lateness99 = 0;
    double lateness999 = 0;
    double gap99 = 0;  ///< between one record and the next, in milliseconds
};

/// At least ten arrivals, in order.
[[nodiscard]] PaceFigures FiguresOf(const std::vector<std::chrono::steady_clock::time_point>& arrivals,
                                    std::chrono::milliseconds interval);

}  // namespace bench
