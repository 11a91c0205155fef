#pragma once

#include <chrono>
#include <cstdint>
#include <vector>

namespace player {

/// How late things were, in buckets that grow with the lateness: however many there are, a value is kept to 3 %, and
/// memory is a few kilobytes.
class Lateness {
public:
    /// What came too early counts as in time.
    void Add(std::chrono::nanoseconds late);
    void Add(const Lateness& others);

    /// True while nothing was added.
    [[nodiscard]] bool IsEmpty() const { return count_ == 0; }

    /// The lateness in milliseconds that this share of all does not exceed; 0 for none. `share` is above 0 and at most 1.
    [[nodiscard]] double Percentile(double share) const;

    /// The greatest, exactly, in milliseconds.
    [[nodiscard]] double Greatest() const;

private:
    std::vector<std::uint64_t> buckets_;
    std::uint64_t count_ = 0;
    std::uint64_t greatest_ = 0;  // microseconds
};

}  // namespace player
