#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>

namespace tools {

/// Checks of an option's value. Unlike CLI11's range they refuse "nan", and say of "1.5" that it is no whole number.
[[nodiscard]] CLI::Validator NumberIn(double lowest, double highest);
[[nodiscard]] CLI::Validator WholeNumberIn(std::int64_t lowest, std::int64_t highest);

}  // namespace tools
