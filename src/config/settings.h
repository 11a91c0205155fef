#pragma once

#include <cstdint>

#include "transport/protocol.h"

namespace trellivan {

/// The sections and keys of the settings file. Capitals do not count there.
namespace keys {
inline constexpr const char* kTimer = "Timer";
inline constexpr const char* kInterval = "Interval";

inline constexpr const char* kConnection = "TCP/IP Settings";
inline constexpr const char* kAddress = "IpAddress";
inline constexpr const char* kPort = "PortNumber";
inline constexpr const char* kRole = "Connect";
inline constexpr const char* kProtocol = "Protocol";
inline constexpr const char* kReconnect = "Reconnect";

inline constexpr const char* kDatabase = "Database File";
inline constexpr const char* kFilePath = "FilePath";

inline constexpr const char* kErrorLog = "Error Log";
inline constexpr const char* kErrorLogLength = "Error_Log_Length";
inline constexpr const char* kErrorLogDays = "Error_Log_Days";
}  // namespace keys

/// What counts where the settings say nothing.
namespace built_in {
inline constexpr std::int16_t kInterval = 25;  // milliseconds
inline constexpr const char* kAddress = "127.0.0.1";
inline constexpr const char* kPort = "5015";
inline constexpr Protocol kProtocol = Protocol::kTcp;
inline constexpr Role kRole = Role::kConnect;
inline constexpr bool kReconnect = false;
inline constexpr std::int32_t kLogLines = 2000;
}  // namespace built_in

/// The longest interval that is taken, in milliseconds.
inline constexpr double kLongestInterval = 32000;

}  // namespace trellivan
