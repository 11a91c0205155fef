#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace platform {

/// Sends datagrams to a multicast group, IPv4 or IPv6. It sends only: it neither joins the group nor binds
/// its port.
///
/// Failure:   of the call: an address that is no group, a port outside 1 to 65535 (kInvalidPropertyValue); no
///            socket to be had; a record too long for a datagram; no buffer space. All else that the network
///            refuses drops the record and arrives as OnError.
/// Events:    raised from the event loop through the gate, never inside a call on this object.
/// Ownership: the handler is set once and lives as long as the control.
class MulticastControl {
public:
    virtual ~MulticastControl() = default;

    virtual void OpenGroup(const std::string& groupAddress, std::int32_t port) = 0;

    /// On a closed control it does nothing.
    virtual void CloseGroup() = 0;

    /// Sends the bytes as one datagram. A control on which no group was ever opened opens what it needs
    /// itself; after CloseGroup the call is a Failure (kWrongProtocolOrState) until OpenGroup.
    virtual void SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                             std::int32_t port) = 0;

    std::function<void(int number, const std::string& description)> OnError;
};

}  // namespace platform
