#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

/// What one piece of work took.
struct Cost {
    double seconds = 0;
    long peakKilobytes = 0;  // resident; a process counts at least what it was forked with
};

/// Runs the work in a process of its own. The time is that of the work alone. Throws std::runtime_error where
/// the work throws.
[[nodiscard]] Cost CostOf(const std::function<void()>& work);

/// Runs a program with its output thrown away. The time includes the program's start. Throws
/// std::runtime_error where it cannot be run or fails.
[[nodiscard]] Cost CostOfProgram(const std::vector<std::string>& words);

}  // namespace bench
