#include "fakes/components.h"

#include "fakes/clock_and_formats.h"
#include "platform/conversions.h"

namespace platform::fakes {
namespace {

bool IsPort(std::int32_t port, std::int32_t lowest)
{
    return port >= lowest && port <= 65535;
}

std::int32_t PortOf(const std::string& text)
{
    return ToLong(text, PlainFormats());
}

/// Enough for the addresses of tests: IPv4 from 224 to 239, IPv6 with "ff" in front.
bool IsGroup(const std::string& address)
{
    return address.starts_with("ff") || (address >= "224." && address < "240");
}

}  // namespace

void Winsock::SetProtocol(Protocol newProtocol)
{
    Call("SetProtocol", newProtocol == Protocol::kTcp ? "TCP" : "UDP");
    RequireClosed();
    protocol_ = newProtocol;
}

void Winsock::SetRemoteHost(const std::string& host)
{
    Call("SetRemoteHost", host);
    remoteHost_ = host;
}

void Winsock::SetRemotePort(std::int32_t port)
{
    Call("SetRemotePort", std::to_string(port));
    RequirePort(port);
    remotePort_ = port;
}

void Winsock::SetLocalPort(std::int32_t port)
{
    Call("SetLocalPort", std::to_string(port));
    RequirePort(port);
}

SocketState Winsock::State() const
{
    Call("State");
    return state;
}

void Winsock::Connect()
{
    Call("Connect");
    ConnectToTarget();
}

void Winsock::Connect(const std::string& host, const std::string& port)
{
    Call("Connect " + host + " " + port);
    RequireClosed();
    const std::int32_t number = PortOf(port);
    RequirePort(number);
    remoteHost_ = host;
    remotePort_ = number;
    ConnectToTarget();
}

void Winsock::ConnectToTarget()
{
    RequireClosed();
    RefuseIf(!HasTarget(), failure::kAddressNotAvailable, "There is no target");
    state = protocol_ == Protocol::kUdp ? kConnected : kConnecting;
}

void Winsock::Listen()
{
    Call("Listen");
    RequireClosed();
    state = kListening;
}

void Winsock::Accept(RequestId request)
{
    Call("Accept", std::to_string(request));
    RequireClosed();
    RefuseIf(request_ != request, failure::kWrongProtocolOrState, "There is no such request");
    request_.reset();
    state = kConnected;
}

void Winsock::Bind(const std::string& port)
{
    Call("Bind", port);
    RequireClosed();
    RequirePort(PortOf(port));
    state = kOpen;
}

void Winsock::SendData(const std::string& text)
{
    Call("SendData", text);
    const bool sendsToTarget = protocol_ == Protocol::kUdp && state != kClosed && HasTarget();
    RefuseIf(state != kConnected && !sendsToTarget, failure::kWrongProtocolOrState,
             "There is nobody to send to");
    sent.push_back(text);
}

std::string Winsock::GetData()
{
    Call("GetData");
    return {};
}

void Winsock::Close()
{
    Call("Close");
    state = kClosed;
}

void Winsock::Request(RequestId request)
{
    request_ = request;
    OnConnectionRequest(request);
}

void Winsock::RequireClosed() const
{
    RefuseIf(state != kClosed, failure::kInvalidOperationAtCurrentState, "The control is not closed");
}

void Winsock::RequirePort(std::int32_t port) const
{
    RefuseIf(!IsPort(port, 0), failure::kInvalidPropertyValue,
             "No port has the number " + std::to_string(port));
}

void Multicast::OpenGroup(const std::string& groupAddress, std::int32_t port)
{
    Call("OpenGroup", groupAddress + " " + std::to_string(port));
    RequireGroup(groupAddress, port);
    closed_ = false;
}

void Multicast::CloseGroup()
{
    Call("CloseGroup");
    closed_ = true;
}

void Multicast::SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                            std::int32_t port)
{
    Call("SendToGroup", groupAddress + " " + std::to_string(port));
    RequireGroup(groupAddress, port);
    RefuseIf(closed_, failure::kWrongProtocolOrState, "The group is closed");
    sent.emplace_back(bytes.begin(), bytes.end());
}

void Multicast::RequireGroup(const std::string& address, std::int32_t port) const
{
    RefuseIf(!IsGroup(address), failure::kInvalidPropertyValue, "\"" + address + "\" is no group");
    RefuseIf(!IsPort(port, 1), failure::kInvalidPropertyValue,
             "No port has the number " + std::to_string(port));
}

}  // namespace platform::fakes
