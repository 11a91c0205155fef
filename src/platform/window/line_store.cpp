#include "platform/window/line_store.h"

#include <algorithm>

namespace platform::window {

void LineStore::Append(std::string_view line)
{
    std::uint64_t end = End();
    while (!line.empty()) {
        const std::size_t block = end / kBlockSize;
        const std::size_t offset = end % kBlockSize;
        if (block == blocks_.size())
            blocks_.push_back(std::make_unique_for_overwrite<char[]>(kBlockSize));
        const std::string_view piece = line.substr(0, kBlockSize - offset);
        std::ranges::copy(piece, blocks_[block].get() + offset);
        line.remove_prefix(piece.size());
        end += piece.size();
    }
    ends_.push_back(end);
}

void LineStore::Clear()
{
    *this = LineStore();
}

std::string LineStore::Line(std::size_t index, std::size_t mostBytes) const
{
    std::uint64_t position = index == 0 ? 0 : ends_[index - 1];
    std::size_t left = std::min<std::size_t>(ends_[index] - position, mostBytes);
    std::string line;
    line.reserve(left);
    while (left > 0) {
        const std::size_t offset = position % kBlockSize;
        const std::size_t piece = std::min(left, kBlockSize - offset);
        line.append(blocks_[position / kBlockSize].get() + offset, piece);
        position += piece;
        left -= piece;
    }
    return line;
}

}  // namespace platform::window
