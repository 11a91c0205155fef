#pragma once

#include <string_view>

namespace trellivan {

/// What carries the records.
enum class Protocol { kTcp, kUdp, kMulticast };

/// Who opens the connection: this program, or the receiver while this program waits for it.
enum class Role { kConnect, kListen };

/// What the settings' names mean, in any letter case. A name may be any text, for example one that was typed into the
/// settings file: other names than "TCP" and "MCAST" mean UDP, other names than "Connect" mean listening.
[[nodiscard]] Protocol ProtocolOf(std::string_view name);
[[nodiscard]] Role RoleOf(std::string_view name);

}  // namespace trellivan
