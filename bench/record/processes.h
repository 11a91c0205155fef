#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/posix/file_descriptor.h"

namespace bench {

/// A program that runs beside the benchmark. It is killed with this object, or ends by itself.
class Process {
public:
    explicit Process(const std::vector<std::string>& words);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    /// Memory that is in use, in bytes.
    [[nodiscard]] std::size_t ResidentBytes() const;

private:
    pid_t process_;
};

/// A connection to a port of this machine; waits until somebody listens there.
[[nodiscard]] platform::FileDescriptor ConnectTo(std::uint16_t port);

/// A socket that waits at a free port of this machine, and its port.
[[nodiscard]] platform::FileDescriptor Listen(std::uint16_t& port);

/// Hands all bytes to the network.
void SendAll(const platform::FileDescriptor& socket, const std::string& bytes);

}  // namespace bench
