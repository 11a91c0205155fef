#pragma once

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <system_error>

#include "platform/posix/file_descriptor.h"

/// What every caller of the system has to see to: the reason of a refusal, calls that a signal interrupts, and signals
/// that would end the program where a call should fail.
namespace platform {

/// Why the call that has just failed did so.
[[nodiscard]] inline std::error_code LastError()
{
    return {errno, std::generic_category()};
}

/// Makes a call of the system (negative when it fails, with the reason in errno) again as long as a signal interrupts
/// it. After a hundred interruptions in a row, which no real signals cause, it is a failed call like any other.
template <class Call>
[[nodiscard]] auto Uninterrupted(const Call& call)
{
    constexpr int kMostInterruptions = 100;
    auto result = call();
    for (int i = 0; result < 0 && errno == EINTR && i < kMostInterruptions; ++i)
        result = call();
    return result;
}

/// Reads up to `size` bytes from a position on. Returns how many there were: fewer at the end of the file, and where
/// `error` then says why it cannot be read on.
[[nodiscard]] inline std::size_t ReadFully(const FileDescriptor& file, std::uint64_t position, void* bytes,
                                           std::size_t size, std::error_code& error)
{
    error.clear();
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = Uninterrupted([&] {
            return ::pread(file.Number(), static_cast<char*>(bytes) + done, size - done,
                           static_cast<off_t>(position + done));
        });
        if (count < 0)
            error = LastError();
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

/// Lets a write past the limit of a file's size, and one to a peer that is gone, fail (EFBIG, EPIPE); by default a
/// signal ends the program there. For the whole process: call it first in main.
inline void IgnoreFatalWriteSignals()
{
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace platform
