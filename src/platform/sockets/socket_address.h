#pragma once

#include <netinet/in.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::sockets {

/// An IPv4 or IPv6 address with a port.
class SocketAddress {
public:
    SocketAddress() = default;
    SocketAddress(const sockaddr* address, socklen_t size);

    /// All addresses of this machine, in a family.
    [[nodiscard]] static SocketAddress Any(int family, std::uint16_t port = 0);

    /// The address that a socket is bound to, and that of its peer.
    [[nodiscard]] static SocketAddress OfSocket(int descriptor);
    [[nodiscard]] static SocketAddress OfPeer(int descriptor);

    /// AF_INET or AF_INET6.
    [[nodiscard]] int Family() const { return storage_.any.sa_family; }
    [[nodiscard]] std::uint16_t Port() const;
    void SetPort(std::uint16_t port);

    /// True for a multicast group.
    [[nodiscard]] bool IsGroup() const;

    /// True for an address that this machine has itself at the moment.
    [[nodiscard]] bool IsOfThisMachine() const;

    /// The same address as a socket for both families writes it: IPv4 inside IPv6.
    [[nodiscard]] SocketAddress AsIPv6() const;

    /// The address in digits, with the interface of a link-local one; IPv4 inside IPv6 shows as IPv4.
    [[nodiscard]] std::string Host() const;

    /// Host and port as they show in descriptions: "127.0.0.1 port 5015".
    [[nodiscard]] std::string Text() const;

    [[nodiscard]] const sockaddr* Data() const { return &storage_.any; }
    [[nodiscard]] socklen_t Size() const;

private:
    union Storage {
        sockaddr any;
        sockaddr_in v4;
        sockaddr_in6 v6;
    };

    Storage storage_{.v6 = {}};
};

/// The number as a port. Failure: kInvalidPropertyValue where it is not from `lowest` to 65535.
[[nodiscard]] std::uint16_t CheckedPort(std::int32_t number, std::uint16_t lowest);

/// A host without the blanks of every kind around it that a paste may bring: line breaks, tabs, no-break and
/// zero-width blanks. UTF-8.
[[nodiscard]] std::string WithoutBlanksAround(std::string_view host);

/// The address that a text of digits stands for, with port 0; nothing for a name.
[[nodiscard]] std::optional<SocketAddress> AddressFromText(const std::string& text);

/// All addresses of a host name in the system's order of preference, with port 0; none where it is not found.
/// Blocks while the network is asked.
[[nodiscard]] std::vector<SocketAddress> AddressesOfHost(const std::string& host);

}  // namespace platform::sockets
