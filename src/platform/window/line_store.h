#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace platform::window {

/// Any number of lines of bytes, appended one after the other.
///
/// Appending and reading cost the same at any length, and nothing is ever moved. Memory: the bytes of the
/// lines, 8 bytes for each line, and less than two blocks besides.
class LineStore {
public:
    static constexpr std::size_t kBlockSize = std::size_t{256} * 1024;

    /// Strong guarantee: where memory runs out, the lines are as before.
    void Append(std::string_view line);

    void Clear();

    [[nodiscard]] std::size_t Count() const { return ends_.size(); }

    /// The line of this index, counted from 0 and below Count(), or as many of its first bytes as asked for.
    [[nodiscard]] std::string Line(std::size_t index,
                                   std::size_t mostBytes = std::numeric_limits<std::size_t>::max()) const;

private:
    [[nodiscard]] std::uint64_t End() const { return ends_.empty() ? 0 : ends_.back(); }

    /// The lines without gaps, cut into blocks wherever a block is full.
    std::vector<std::unique_ptr<char[]>> blocks_;
    /// Where each line ends.
    std::deque<std::uint64_t> ends_;
};

}  // namespace platform::window
