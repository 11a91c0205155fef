#include "play/descriptor_limit.h"

#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <limits>

namespace player {

std::int64_t RaiseDescriptorLimit()
{
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    ::getrlimit(RLIMIT_NOFILE, &limit);
    constexpr rlim_t kNoLimit = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int64_t>(std::min(limit.rlim_cur, kNoLimit));
}

std::int64_t OpenDescriptors()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return std::distance(begin(descriptors), end(descriptors)) - 1;  // the folder itself is open as well
}

}  // namespace player
