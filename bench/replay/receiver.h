#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/file_descriptor.h"
#include "transport/protocol.h"

namespace bench {

using trellivan::Protocol;

/// Where a sender of this protocol sends on this machine.
[[nodiscard]] std::string AddressFor(Protocol protocol);

/// Receives a feed on a thread of its own and notes when each record came.
class Receiver {
public:
    using Arrivals = std::vector<std::chrono::steady_clock::time_point>;

    /// Waits at any free port. All records are of one size in bytes.
    Receiver(Protocol protocol, std::size_t recordSize);
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    ~Receiver();

    [[nodiscard]] std::uint16_t Port() const;

    /// Records received so far.
    [[nodiscard]] std::size_t Count() const { return count_; }

    /// Ends the receiving and gives the moments of arrival.
    [[nodiscard]] Arrivals Stop();

private:
    void ReceiveDatagrams();
    void ReceiveStreams();
    void ReceiveStream(const platform::FileDescriptor& stream);
    void Note();

    std::size_t recordSize_;
    platform::FileDescriptor socket_;
    Arrivals arrivals_;
    std::atomic<std::size_t> count_ = 0;
    std::atomic<bool> stopping_ = false;
    std::thread thread_;
};

}  // namespace bench
