#include "platform/jet/sorting.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace platform::jet {
namespace {

constexpr std::size_t kFewEntries = 64;
constexpr int kDigitBits = 8;
constexpr std::size_t kDigits = 1U << kDigitBits;

/// The bits in which not all keys are the same.
std::uint64_t DifferingBits(std::span<const NumberEntry> entries)
{
    std::uint64_t differing = 0;
    for (const NumberEntry& entry : entries)
        differing |= entry.Key() ^ entries.front().Key();
    return differing;
}

/// The digit of the keys that begins with the highest of their differing bits.
class LeadingDigit {
public:
    explicit LeadingDigit(std::uint64_t differingBits)
        : shift_(std::max(static_cast<int>(std::bit_width(differingBits)) - kDigitBits, 0))
    {}
    [[nodiscard]] std::size_t Of(const NumberEntry& entry) const
    {
        return entry.Key() >> shift_ & (kDigits - 1);
    }

private:
    int shift_;
};

/// Where the entries of each digit end once they are in order.
std::array<std::size_t, kDigits> GroupEnds(std::span<const NumberEntry> entries, LeadingDigit digit)
{
    std::array<std::size_t, kDigits> ends{};
    for (const NumberEntry& entry : entries)
        ++ends[digit.Of(entry)];
    for (std::size_t i = 1; i < kDigits; ++i)
        ends[i] += ends[i - 1];
    return ends;
}

/// Puts the entries of each digit together.
void Group(std::span<NumberEntry> entries, LeadingDigit digit, const std::array<std::size_t, kDigits>& ends)
{
    std::array<std::size_t, kDigits> next{};
    std::copy(ends.begin(), ends.end() - 1, next.begin() + 1);
    for (std::size_t group = 0; group < kDigits; ++group)
        while (next[group] < ends[group]) {
            NumberEntry& entry = entries[next[group]];
            const std::size_t itsGroup = digit.Of(entry);
            if (itsGroup != group)
                std::swap(entry, entries[next[itsGroup]]);
            ++next[itsGroup];
        }
}

}  // namespace

void SortEntries(std::span<NumberEntry> entries)
{
    const std::uint64_t differing = entries.size() > kFewEntries ? DifferingBits(entries) : 0;
    if (differing == 0)
        return std::sort(entries.begin(), entries.end());
    const LeadingDigit digit(differing);
    const std::array<std::size_t, kDigits> ends = GroupEnds(entries, digit);
    Group(entries, digit, ends);
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        SortEntries(entries.subspan(begin, end - begin));
        begin = end;
    }
}

}  // namespace platform::jet
