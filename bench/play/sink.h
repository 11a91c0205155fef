#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>

#include "platform/posix/file_descriptor.h"

namespace bench {

/// A receiver in a process of its own: it takes any number of TCP connections on a port of this machine and drops what
/// comes.
class Sink {
public:
    explicit Sink(std::uint16_t port);
    Sink(const Sink&) = delete;
    Sink& operator=(const Sink&) = delete;
    ~Sink();

private:
    pid_t process_;
};

/// Waits for so many connections on a port that listens, and for the first byte of the last one. When that came.
[[nodiscard]] std::chrono::steady_clock::time_point FirstByte(const platform::FileDescriptor& listening,
                                                              int connections);

/// A socket that listens on a port of this machine.
[[nodiscard]] platform::FileDescriptor Listening(std::uint16_t port);

/// A connection to a port of this machine.
[[nodiscard]] platform::FileDescriptor Connected(std::uint16_t port);

}  // namespace bench
