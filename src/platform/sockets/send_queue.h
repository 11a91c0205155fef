#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/posix/file_descriptor.h"

namespace platform::sockets {

/// The bytes that wait for a TCP peer to take them. They count in a sum that several queues share, up to
/// their destruction.
class SendQueue {
public:
    /// The most that may wait in all queues of one sum, in bytes.
    static constexpr std::size_t kMostWaiting = std::size_t{64} << 20;

    explicit SendQueue(std::size_t& waitingInAll) : waitingInAll_(waitingInAll) {}
    SendQueue(const SendQueue&) = delete;
    SendQueue& operator=(const SendQueue&) = delete;
    ~SendQueue() { waitingInAll_ -= waiting_; }

    [[nodiscard]] bool IsEmpty() const { return blocks_.empty(); }
    [[nodiscard]] std::size_t Bytes() const { return waiting_; }

    /// True when the bytes would go past the most that may wait.
    [[nodiscard]] bool IsTooMuch(std::size_t bytes) const;

    void Append(std::string_view bytes);

    /// Sends what the network takes at the moment, a bounded amount. The error of a call that failed; that the network
    /// takes no more is one only where it has taken nothing.
    [[nodiscard]] std::error_code SendTo(const FileDescriptor& socket);

private:
    void DropFront(std::size_t bytes);

    std::size_t& waitingInAll_;
    std::size_t waiting_ = 0;
    std::size_t sentOfFront_ = 0;
    std::deque<std::string> blocks_;
};

}  // namespace platform::sockets
