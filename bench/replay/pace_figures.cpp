#include "replay/pace_figures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "replay/percentile.h"

namespace bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

double Median(const double* begin, std::size_t count)
{
    return Percentile(std::vector(begin, begin + count), 0.5);
}

}  // namespace

PaceFigures FiguresOf(const std::vector<std::chrono::steady_clock::time_point>& arrivals,
                      std::chrono::milliseconds interval)
{
    const Milliseconds period = interval;
    std::vector<double> lateness;
    std::vector<double> gaps;
    for (std::size_t i = 0; i < arrivals.size(); ++i) {
        const Milliseconds sinceFirst = arrivals[i] - arrivals.front();
        lateness.push_back((sinceFirst - static_cast<double>(i) * period).count());
        if (i > 0)
            gaps.push_back(Milliseconds(arrivals[i] - arrivals[i - 1]).count());
    }
    const double earliest = *std::ranges::min_element(lateness);
    for (double& value : lateness)
        value -= earliest;

    const std::size_t tenth = lateness.size() / 10;
    const std::size_t apart = lateness.size() - tenth;
    const double drift = Median(lateness.data() + apart, tenth) - Median(lateness.data(), tenth);
    const double meanError = drift / (static_cast<double>(apart) * period.count());
    return {.recordsPerSecond = 1000 / (period.count() * (1 + meanError)),
            .meanErrorPercent = meanError * 100,
            .lostTicks = std::lround(drift / period.count()),
            .lateness50 = Percentile(lateness, 0.5),
            .lateness99 = Percentile(lateness, 0.99),
            .lateness999 = Percentile(lateness, 0.999),
            .gap99 = Percentile(gaps, 0.99)};
}

}  // namespace bench
