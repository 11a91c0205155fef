#pragma once

#include <string>
#include <vector>

#include "play/figures.h"

namespace player {

/// The report as JSON, with a line end behind it: the figures of all tills together and, of a shop, under "tills" those
/// of each. Without any measured tick a lateness is null.
[[nodiscard]] std::string ReportOf(const std::vector<Figures>& tills, bool isShop);

/// The same in words: some lines.
[[nodiscard]] std::string SummaryOf(const std::vector<Figures>& tills);

/// A number with its thousands apart: "1,234,567".
[[nodiscard]] std::string Grouped(std::int64_t number);

/// "1 record", "1,000 records".
[[nodiscard]] std::string Counted(std::int64_t number, const std::string& one);

}  // namespace player
