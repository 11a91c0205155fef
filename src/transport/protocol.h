#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/conversions.h"

namespace trellivan {

/// What carries the records.
enum class Protocol { kTcp, kUdp, kMulticast };

/// Who opens the connection: this program, or the receiver while this program waits for it.
enum class Role { kConnect, kListen };

/// In the order of the window's lists.
inline constexpr std::array kProtocols = {Protocol::kTcp, Protocol::kUdp, Protocol::kMulticast};
inline constexpr std::array kRoles = {Role::kListen, Role::kConnect};

/// The name that the window's list shows and the settings keep.
[[nodiscard]] constexpr const char* NameOf(Protocol protocol)
{
    switch (protocol) {
        case Protocol::kTcp:
            return "TCP";
        case Protocol::kUdp:
            return "UDP";
        case Protocol::kMulticast:
            return "MCAST";
    }
    return "";
}

[[nodiscard]] constexpr const char* NameOf(Role role)
{
    switch (role) {
        case Role::kConnect:
            return "Connect";
        case Role::kListen:
            return "Listen";
    }
    return "";
}

/// The names of all protocols, with this between them.
[[nodiscard]] inline std::string ProtocolNames(std::string_view between)
{
    std::string names;
    for (const Protocol protocol : kProtocols)
        names.append(names.empty() ? "" : between).append(NameOf(protocol));
    return names;
}

/// The protocol or role of this name, in any letter case; nothing for any other text.
[[nodiscard]] inline std::optional<Protocol> ProtocolNamed(std::string_view name)
{
    for (const Protocol protocol : kProtocols) {
        if (platform::SameName(name, NameOf(protocol)))
            return protocol;
    }
    return std::nullopt;
}

[[nodiscard]] inline std::optional<Role> RoleNamed(std::string_view name)
{
    for (const Role role : kRoles) {
        if (platform::SameName(name, NameOf(role)))
            return role;
    }
    return std::nullopt;
}

/// The protocol that a text of the settings means: UDP where it is no protocol's name, as somebody may have typed into the
/// settings file.
[[nodiscard]] inline Protocol ProtocolOf(std::string_view name)
{
    return ProtocolNamed(name).value_or(Protocol::kUdp);
}

/// The role that a text of the settings means. Every name but "Connect" means listening.
[[nodiscard]] inline Role RoleOf(std::string_view name)
{
    return RoleNamed(name).value_or(Role::kListen);
}

}  // namespace trellivan
