#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/posix/file_descriptor.h"
#include "platform/sockets/host_lookup.h"
#include "platform/sockets/socket_address.h"
#include "record/source.h"

namespace record {

/// Datagrams, each of which is a record: at a port from whoever sends, from a multicast group, or from a till
/// that waits until a receiver says hello. To that one an empty datagram goes once a second while nothing comes.
class DatagramSource final : public Source {
public:
    /// Failure: the port is in use, the group cannot be joined and the like. WrongUsage for an address that is
    /// none, or no group.
    explicit DatagramSource(const Surroundings& surroundings);

    /// No datagram is ever under way.
    void Finish() override {}

private:
    void Open();
    void Read();
    void SetSender(const sockaddr_in6& address);
    void CountLost(const msghdr& message);
    void SecondHasPassed();
    void SayHello(const std::vector<platform::sockets::SocketAddress>& till);

    Surroundings around_;
    platform::FileDescriptor socket_;
    std::vector<char> buffer_;
    std::optional<platform::sockets::RestingWatch> readable_;
    sockaddr_in6 lastSender_{};
    std::uint32_t lostBefore_ = 0;  // as the system counts them

    platform::sockets::HostLookup lookup_;
    std::unique_ptr<platform::Alarm> second_;
    bool hasCome_ = false;  // a datagram within the last second
};

}  // namespace record
