#include "play/checked_settings.h"

#include <optional>

#include "platform/conversions.h"
#include "platform/sockets/socket_address.h"
#include "play/usage_error.h"

namespace player {
namespace {

constexpr double kHighestPort = 65535;

/// A value of the settings, or what the window shows without one.
std::string ValueOr(const TillSettings& settings, const char* section, const char* key,
                    const std::string& builtIn)
{
    const std::string value = settings.Value(section, key);
    return value.empty() ? builtIn : value;
}

std::int32_t WholeNumber(const std::string& text, double highest, const std::string& what,
                         const platform::RegionalFormats& formats)
{
    const auto number = formats.Number(text);
    if (!number)
        throw UsageError("The " + what + " \"" + text + "\" is no number");
    const double whole = platform::RoundHalfToEven(*number);
    if (whole < 1 || whole > highest)
        throw UsageError("The " + what + " " + text + " is not from 1 to " +
                         std::to_string(static_cast<int>(highest)));
    return static_cast<std::int32_t>(whole);
}

Protocol CheckedProtocol(const std::string& text)
{
    if (const auto protocol = trellivan::ProtocolNamed(text))
        return *protocol;
    throw UsageError("The protocol \"" + text + "\" is none of " + trellivan::ProtocolNames(", "));
}

Role CheckedRole(const std::string& text)
{
    if (const auto role = trellivan::RoleNamed(text))
        return *role;
    throw UsageError("The role \"" + text + "\" is neither Connect nor Listen");
}

bool YesOrNo(const std::string& text)
{
    const bool yes = platform::SameName(text, "YES");
    if (!yes && !platform::SameName(text, "NO"))
        throw UsageError("Reconnect \"" + text + "\" is neither yes nor no");
    return yes;
}

void CheckGroup(const std::string& address)
{
    const auto group = platform::sockets::AddressFromText(platform::sockets::WithoutBlanksAround(address));
    if (!group || !group->IsGroup())
        throw UsageError("The address \"" + address + "\" is no multicast group");
}

}  // namespace

CheckedSettings Check(const TillSettings& settings, const platform::RegionalFormats& formats)
{
    const auto connection = [&](const char* key, const std::string& builtIn) {
        return ValueOr(settings, keys::kConnection, key, builtIn);
    };
    CheckedSettings checked;
    checked.interval = std::chrono::milliseconds(
        WholeNumber(ValueOr(settings, keys::kTimer, keys::kInterval, std::to_string(built_in::kInterval)),
                    trellivan::kLongestInterval, "interval", formats));
    checked.address = connection(keys::kAddress, built_in::kAddress);
    checked.port = WholeNumber(connection(keys::kPort, built_in::kPort), kHighestPort, "port", formats);
    checked.protocol = CheckedProtocol(connection(keys::kProtocol, NameOf(built_in::kProtocol)));
    checked.role = CheckedRole(connection(keys::kRole, NameOf(built_in::kRole)));
    checked.reconnect = YesOrNo(connection(keys::kReconnect, built_in::kReconnect ? "YES" : "NO"));
    if (checked.protocol == Protocol::kMulticast)
        CheckGroup(checked.address);
    if (settings.Value(keys::kDatabase, keys::kFilePath).empty())
        throw UsageError("No database is named");
    return checked;
}

bool Listens(const CheckedSettings& settings)
{
    return settings.role == Role::kListen && settings.protocol != Protocol::kMulticast;
}

std::string Target(const CheckedSettings& settings)
{
    const std::string port = "port " + std::to_string(settings.port) + " over " + NameOf(settings.protocol);
    return Listens(settings) ? port : settings.address + " " + port;
}

}  // namespace player
