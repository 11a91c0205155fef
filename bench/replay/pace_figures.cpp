#include "replay/pace_figures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "replay/percentile.h"

namespace bench {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

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

    const Milliseconds whole = arrivals.back() - arrivals.front();
    const auto received = static_cast<long>(gaps.size());
    const long expected = std::lround(whole / period);
    return {.recordsPerSecond = static_cast<double>(received) / std::chrono::duration<double>(whole).count(),
            .meanErrorPercent = (whole / period / static_cast<double>(received) - 1) * 100,
            .lostTicks = expected - received,
            .lateness50 = Percentile(lateness, 0.5),
            .lateness99 = Percentile(lateness, 0.99),
            .lateness999 = Percentile(lateness, 0.999),
            .gap99 = Percentile(gaps, 0.99)};
}

}  // namespace bench
