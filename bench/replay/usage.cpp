#include "replay/usage.h"

#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace bench {

std::chrono::nanoseconds ThreadTime()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::size_t ResidentBytes()
{
    std::ifstream statistics("/proc/self/statm");
    std::size_t allPages = 0;
    std::size_t residentPages = 0;
    statistics >> allPages >> residentPages;
    return residentPages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

std::size_t OpenDescriptors()
{
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}

}  // namespace bench
