#pragma once

#include <vector>

namespace bench {

/// The value that this share of all values does not exceed; 0 for no values. `share` is above 0 and at most 1.
[[nodiscard]] double Percentile(std::vector<double> values, double share);

}  // namespace bench
