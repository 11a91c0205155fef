#include "play/lateness.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace player {
namespace {

// Up to 64 microseconds each has a bucket of its own; then 32 buckets share each doubling.
constexpr int kBitsKept = 6;
constexpr std::size_t kBucketsADoubling = 32;
constexpr std::uint64_t kLongest = std::uint64_t{1} << 40;
constexpr double kMicrosecondsInOne = 1000;

std::size_t BucketOf(std::uint64_t microseconds)
{
    const int width = static_cast<int>(std::bit_width(microseconds));
    const int shift = std::max(0, width - kBitsKept);
    return static_cast<std::size_t>(shift) * kBucketsADoubling + (microseconds >> shift);
}

/// The greatest number of microseconds that a bucket takes.
std::uint64_t EndOf(std::size_t bucket)
{
    if (bucket < 2 * kBucketsADoubling)
        return bucket;
    const std::size_t shift = bucket / kBucketsADoubling - 1;
    const std::uint64_t kept = bucket - shift * kBucketsADoubling;
    return ((kept + 1) << shift) - 1;
}

}  // namespace

void Lateness::Add(std::chrono::nanoseconds late)
{
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(late).count();
    const auto value =
        std::min(static_cast<std::uint64_t>(std::max<std::int64_t>(microseconds, 0)), kLongest);
    const std::size_t bucket = BucketOf(value);
    if (bucket >= buckets_.size())
        buckets_.resize(bucket + 1);
    ++buckets_[bucket];
    ++count_;
    greatest_ = std::max(greatest_, value);
}

void Lateness::Add(const Lateness& others)
{
    buckets_.resize(std::max(buckets_.size(), others.buckets_.size()));
    for (std::size_t bucket = 0; bucket < others.buckets_.size(); ++bucket)
        buckets_[bucket] += others.buckets_[bucket];
    count_ += others.count_;
    greatest_ = std::max(greatest_, others.greatest_);
}

double Lateness::Percentile(double share) const
{
    const auto wanted = static_cast<std::uint64_t>(std::ceil(share * static_cast<double>(count_)));
    std::uint64_t seen = 0;
    for (std::size_t bucket = 0; bucket < buckets_.size(); ++bucket) {
        seen += buckets_[bucket];
        if (seen >= wanted)
            return static_cast<double>(std::min(EndOf(bucket), greatest_)) / kMicrosecondsInOne;
    }
    return 0;
}

double Lateness::Greatest() const
{
    return static_cast<double>(greatest_) / kMicrosecondsInOne;
}

}  // namespace player
