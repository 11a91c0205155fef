#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace platform {

/// Sends datagrams to a multicast group, IPv4 or IPv6. It sends only: it neither joins the group nor binds
/// its port.
///
/// Failure:   an address that is no group or a port outside 1 to 65535 is a Failure (kInvalidPropertyValue)
///            of the call, and so are a socket that this system does not give and a record that is too long
///            for a datagram or finds this machine's own buffers full. What the network refuses arrives as
///            OnError and drops the record.
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
