#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "platform/regional_formats.h"
#include "play/till_settings.h"
#include "transport/protocol.h"

namespace player {

using trellivan::Protocol;
using trellivan::Role;

/// Settings that can be played.
struct CheckedSettings {
    Protocol protocol = Protocol::kTcp;
    Role role = Role::kConnect;
    std::string address;
    std::int32_t port = 0;
    std::chrono::milliseconds interval{0};
    bool reconnect = false;
};

/// Reads a till's settings as the window does, its built-in values where they say nothing, and refuses what the window
/// would pass over in silence or could never play. Failure: UsageError, which names the value.
[[nodiscard]] CheckedSettings Check(const TillSettings& settings, const platform::RegionalFormats& formats);

/// True where the receiver is to call. Over MCAST nobody calls, whatever the role.
[[nodiscard]] bool Listens(const CheckedSettings& settings);

/// Where the records go, for people: "127.0.0.1 port 5015 over TCP".
[[nodiscard]] std::string Target(const CheckedSettings& settings);

}  // namespace player
