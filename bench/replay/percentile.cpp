#include "replay/percentile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace bench {

double Percentile(std::vector<double> values, double share)
{
    if (values.empty())
        return 0;
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(values.size())));
    const auto nth = values.begin() + static_cast<std::ptrdiff_t>(std::max<std::size_t>(rank, 1) - 1);
    std::ranges::nth_element(values, nth);
    return *nth;
}

}  // namespace bench
