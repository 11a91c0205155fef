#include "transport/protocol.h"

#include "platform/conversions.h"

namespace trellivan {

Protocol ProtocolOf(std::string_view name)
{
    const std::string word = platform::UpperCase(name);
    if (word == "TCP")
        return Protocol::kTcp;
    return word == "MCAST" ? Protocol::kMulticast : Protocol::kUdp;
}

Role RoleOf(std::string_view name)
{
    return platform::UpperCase(name) == "CONNECT" ? Role::kConnect : Role::kListen;
}

}  // namespace trellivan
