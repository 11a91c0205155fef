#include "platform/sockets/socket_address.h"

#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <memory>

#include "platform/ansi_code_page.h"
#include "platform/failure.h"
#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

std::vector<SocketAddress> GetAddresses(const std::string& host, int flags)
{
    const addrinfo wanted{.ai_flags = flags,
                          .ai_family = AF_UNSPEC,
                          .ai_socktype = SOCK_STREAM,
                          .ai_protocol = 0,
                          .ai_addrlen = 0,
                          .ai_addr = nullptr,
                          .ai_canonname = nullptr,
                          .ai_next = nullptr};
    addrinfo* first = nullptr;
    if (::getaddrinfo(host.c_str(), nullptr, &wanted, &first) != 0)
        return {};
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(first, &::freeaddrinfo);
    std::vector<SocketAddress> addresses;
    for (const addrinfo* found = first; found != nullptr; found = found->ai_next)
        addresses.emplace_back(found->ai_addr, found->ai_addrlen);
    return addresses;
}

/// Characters that show nothing: Unicode's blanks, controls and zero-width marks.
bool IsBlank(char32_t character)
{
    constexpr std::array<std::pair<char32_t, char32_t>, 9> kBlanks = {{{0x00, 0x20},
                                                                       {0x7F, 0xA0},
                                                                       {0xAD, 0xAD},
                                                                       {0x1680, 0x1680},
                                                                       {0x2000, 0x200F},
                                                                       {0x2028, 0x202F},
                                                                       {0x205F, 0x2064},
                                                                       {0x3000, 0x3000},
                                                                       {0xFEFF, 0xFEFF}}};
    return std::ranges::any_of(kBlanks, [character](const auto& range) {
        return character >= range.first && character <= range.second;
    });
}

template <class Ask>
SocketAddress Asked(Ask ask, int descriptor)
{
    sockaddr_in6 address{};
    socklen_t size = sizeof address;
    if (ask(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        return {};
    return {reinterpret_cast<const sockaddr*>(&address), size};
}

}  // namespace

SocketAddress::SocketAddress(const sockaddr* address, socklen_t size)
{
    std::memcpy(&storage_, address, std::min<std::size_t>(size, sizeof storage_));
}

SocketAddress SocketAddress::Any(int family, std::uint16_t port)
{
    SocketAddress address;  // all zeros in both families
    address.storage_.any.sa_family = static_cast<sa_family_t>(family);
    address.SetPort(port);
    return address;
}

SocketAddress SocketAddress::OfSocket(int descriptor)
{
    return Asked(::getsockname, descriptor);
}

SocketAddress SocketAddress::OfPeer(int descriptor)
{
    return Asked(::getpeername, descriptor);
}

std::uint16_t SocketAddress::Port() const
{
    return ntohs(Family() == AF_INET ? storage_.v4.sin_port : storage_.v6.sin6_port);
}

void SocketAddress::SetPort(std::uint16_t port)
{
    (Family() == AF_INET ? storage_.v4.sin_port : storage_.v6.sin6_port) = htons(port);
}

bool SocketAddress::IsGroup() const
{
    return Family() == AF_INET ? IN_MULTICAST(ntohl(storage_.v4.sin_addr.s_addr))
                               : IN6_IS_ADDR_MULTICAST(&storage_.v6.sin6_addr);
}

bool SocketAddress::IsOfThisMachine() const
{
    if (IsGroup())
        return false;
    const FileDescriptor probe = OpenSocket(Family(), SOCK_DGRAM);
    if (Family() == AF_INET6)
        SetOption(probe, IPPROTO_IPV6, IPV6_V6ONLY, 0);
    SocketAddress address = *this;
    address.SetPort(0);
    if (::bind(probe.Number(), address.Data(), address.Size()) != 0)
        return false;
    // A broadcast address can be bound as well, but connected only by a socket that asks to broadcast.
    address.SetPort(Port());
    return ::connect(probe.Number(), address.Data(), address.Size()) == 0;
}

SocketAddress SocketAddress::AsIPv6() const
{
    if (Family() == AF_INET6)
        return *this;
    SocketAddress mapped = Any(AF_INET6);
    auto& bytes = mapped.storage_.v6.sin6_addr.s6_addr;
    bytes[10] = bytes[11] = 0xFF;
    std::memcpy(&bytes[12], &storage_.v4.sin_addr, sizeof storage_.v4.sin_addr);
    mapped.SetPort(Port());
    return mapped;
}

std::string SocketAddress::Host() const
{
    std::array<char, NI_MAXHOST> host{};
    ::getnameinfo(Data(), Size(), host.data(), host.size(), nullptr, 0, NI_NUMERICHOST);
    const std::string text = host.data();
    constexpr std::string_view kMapped = "::ffff:";
    return text.starts_with(kMapped) ? text.substr(kMapped.size()) : text;
}

std::string SocketAddress::Text() const
{
    return Host() + " port " + std::to_string(Port());
}

socklen_t SocketAddress::Size() const
{
    return Family() == AF_INET ? sizeof storage_.v4 : sizeof storage_.v6;
}

std::uint16_t CheckedPort(std::int32_t number, std::uint16_t lowest)
{
    constexpr auto kHighest = std::numeric_limits<std::uint16_t>::max();
    if (number < lowest || number > kHighest)
        throw Failure(failure::kInvalidPropertyValue, "Port " + std::to_string(number) + " is outside " +
                                                          std::to_string(lowest) + " to " +
                                                          std::to_string(kHighest));
    return static_cast<std::uint16_t>(number);
}

std::string WithoutBlanksAround(std::string_view host)
{
    const char* begin = nullptr;
    const char* end = nullptr;
    while (!host.empty()) {
        const char* const character = host.data();
        if (IsBlank(TakeCharacter(host)))
            continue;
        begin = begin == nullptr ? character : begin;
        end = host.data();
    }
    return {begin, end};
}

std::optional<SocketAddress> AddressFromText(const std::string& text)
{
    const auto addresses = GetAddresses(text, AI_NUMERICHOST);
    return addresses.empty() ? std::nullopt : std::optional(addresses.front());
}

std::vector<SocketAddress> AddressesOfHost(const std::string& host)
{
    return GetAddresses(host, 0);
}

}  // namespace platform::sockets
