#pragma once

#include <string>
#include <string_view>

#include "platform/conversions.h"

namespace trellivan {

/// What carries the records.
enum class Protocol { kTcp, kUdp, kMulticast };

/// Who opens the connection: this program, or the receiver while this program waits for it.
enum class Role { kConnect, kListen };

/// The protocol that a name of the settings means, in any letter case. Every name but "TCP" and "MCAST" means UDP, also
/// one that somebody typed into the settings file.
[[nodiscard]] inline Protocol ProtocolOf(std::string_view name)
{
    const std::string word = platform::UpperCase(name);
    if (word == "TCP")
        return Protocol::kTcp;
    return word == "MCAST" ? Protocol::kMulticast : Protocol::kUdp;
}

/// The role that a name of the settings means, in any letter case. Every name but "Connect" means listening.
[[nodiscard]] inline Role RoleOf(std::string_view name)
{
    return platform::UpperCase(name) == "CONNECT" ? Role::kConnect : Role::kListen;
}

}  // namespace trellivan
