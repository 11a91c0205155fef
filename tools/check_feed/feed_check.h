#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "make_database/database_writer.h"

namespace tools {

/// How much of a feed a receiver got.
struct FeedCheck {
    std::size_t records = 0;  // whole records, from the first on, in order
    std::size_t bytes = 0;    // bytes up to the end of the last of them
};

/// The texts of the receipts in ascending `ref`, as they go onto the wire: one byte a character in code page
/// 1252.
[[nodiscard]] std::vector<std::string> FeedOf(std::vector<Receipt> receipts);

/// Compares what a receiver got with a feed. A record may carry its recorded time: the byte 0x01, the time's
/// text and the byte 0x02. The check ends at the first difference.
[[nodiscard]] FeedCheck CheckFeed(const std::vector<std::string>& feed, std::string_view received);

}  // namespace tools
