#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <optional>

#include "platform/posix/file_descriptor.h"

namespace platform {

/// Reads up to `size` bytes from a position on, however often a signal interrupts it. Returns how many there
/// were, fewer only at the end of the file; nothing, with the reason in errno, where they cannot be read.
[[nodiscard]] inline std::optional<std::size_t> ReadFully(const FileDescriptor& file, std::uint64_t position,
                                                          void* bytes, std::size_t size)
{
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::pread(file.Number(), static_cast<char*>(bytes) + done, size - done,
                                      static_cast<off_t>(position + done));
        if (count < 0 && errno != EINTR)
            return std::nullopt;
        if (count == 0)
            break;
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return done;
}

}  // namespace platform
