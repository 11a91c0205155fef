#include "platform/jet/sorting.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <string_view>
#include <vector>

namespace platform::jet {
namespace {

constexpr std::size_t kShortestPiece = 32;
constexpr std::size_t kLongestPiece = 65'536;

/// Rows whose keys are alike up to an offset.
struct Run {
    std::span<RowPosition> rows;
    std::size_t from = 0;
};

/// One piece of a row's key. A shorter one than the others is the key's last.
struct Entry {
    std::string_view piece;
    RowPosition position;

    auto operator<=>(const Entry&) const = default;
};

/// The same piece of the keys of several rows.
class Pieces {
public:
    Pieces(const Run& run, std::size_t size, const std::function<std::string(RowPosition)>& keyOf)
        : bytes_(run.rows.size() * size, '\0')
    {
        entries_.reserve(run.rows.size());
        char* end = bytes_.data();
        for (const RowPosition position : run.rows) {
            const std::string key = keyOf(position);
            const std::string_view piece = std::string_view(key).substr(std::min(run.from, key.size()), size);
            entries_.push_back({{end, piece.size()}, position});
            end = std::ranges::copy(piece, end).out;
        }
    }

    [[nodiscard]] std::vector<Entry>& Entries() { return entries_; }

private:
    std::string bytes_;
    std::vector<Entry> entries_;
};

/// Sorts a run by one more piece of its keys and adds the runs that this leaves undecided.
void SortByPiece(const Run& run, std::size_t size, const std::function<std::string(RowPosition)>& keyOf,
                 std::vector<Run>& undecided)
{
    Pieces pieces(run, size, keyOf);
    std::vector<Entry>& entries = pieces.Entries();
    std::ranges::sort(entries);
    std::ranges::transform(entries, run.rows.begin(), &Entry::position);
    for (auto begin = entries.begin(); begin != entries.end();) {
        const auto end =
            std::find_if(begin, entries.end(), [&](const Entry& e) { return e.piece != begin->piece; });
        if (end - begin > 1 && begin->piece.size() == size)
            undecided.push_back({run.rows.subspan(static_cast<std::size_t>(begin - entries.begin()),
                                                  static_cast<std::size_t>(end - begin)),
                                 run.from + size});
        begin = end;
    }
}

}  // namespace

void SortByKey(std::span<RowPosition> rows, const std::function<std::string(RowPosition)>& keyOf,
               std::size_t keyBytesHeld)
{
    std::vector<Run> undecided = {{rows, 0}};
    while (!undecided.empty()) {
        const Run run = undecided.back();
        undecided.pop_back();
        const std::size_t share = keyBytesHeld / std::max<std::size_t>(run.rows.size(), 1);
        SortByPiece(run, std::clamp(share, kShortestPiece, kLongestPiece), keyOf, undecided);
    }
}

}  // namespace platform::jet
