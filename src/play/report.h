#pragma once

#include <string>
#include <vector>

#include "play/figures.h"

namespace player {

/// The report as JSON, with a line end behind it. Of several tills it has the figures of all together and, under
/// "tills", those of each.
[[nodiscard]] std::string ReportOf(const std::vector<Figures>& tills);

/// The same in words: some lines.
[[nodiscard]] std::string SummaryOf(const std::vector<Figures>& tills);

/// A number with its thousands apart: "1,234,567".
[[nodiscard]] std::string Grouped(std::int64_t number);

}  // namespace player
