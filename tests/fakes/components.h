#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fakes/clock_and_formats.h"
#include "fakes/journal.h"
#include "platform/conversions.h"
#include "platform/event_gate.h"
#include "platform/multicast_control.h"
#include "platform/winsock_control.h"

/// The socket components and the event queue, held in memory: a test plays the network by setting `state` and raising
/// the events. A call is refused where the interface says so.
namespace platform::fakes {

class SocketComponent : protected Journaled {
protected:
    using Journaled::Journaled;

    void RequirePort(std::int32_t port, std::int32_t lowest = 0) const
    {
        RefuseIf(port < lowest || port > 65535, failure::kInvalidPropertyValue,
                 "No port has the number " + std::to_string(port));
    }
};

class Winsock : public WinsockControl, private SocketComponent {
public:
    Winsock(Journal& journal, const std::string& name) : SocketComponent(journal, name) {}

    void SetProtocol(Protocol newProtocol) override
    {
        Call("SetProtocol", newProtocol == Protocol::kTcp ? "TCP" : "UDP");
        RequireClosed();
        protocol_ = newProtocol;
    }
    void SetRemoteHost(const std::string& host) override { Keep("SetRemoteHost", host, remoteHost_); }
    void SetRemotePort(std::int32_t port) override
    {
        Call("SetRemotePort", std::to_string(port));
        RequirePort(port);
        remotePort_ = port;
    }
    void SetLocalPort(std::int32_t port) override
    {
        Call("SetLocalPort", std::to_string(port));
        RequirePort(port);
    }
    [[nodiscard]] SocketState State() const override { return Read("State", state); }
    void Connect() override
    {
        Call("Connect");
        ConnectToTarget();
    }
    void Connect(const std::string& host, const std::string& port) override
    {
        Call("Connect " + host + " " + port);
        RequireClosed();
        const std::int32_t number = PortOf(port);
        remoteHost_ = host;
        remotePort_ = number;
        ConnectToTarget();
    }
    void Listen() override
    {
        Call("Listen");
        RequireClosed();
        state = kListening;
    }
    void Accept(RequestId request) override
    {
        Call("Accept", std::to_string(request));
        RequireClosed();
        RefuseIf(request_ != request, failure::kWrongProtocolOrState, "There is no such request");
        request_.reset();
        state = kConnected;
    }
    void Bind(const std::string& port) override
    {
        Call("Bind", port);
        RequireClosed();
        static_cast<void>(PortOf(port));
        state = kOpen;
    }
    void SendData(const std::string& text) override
    {
        Call("SendData", text);
        const bool sendsToTarget = protocol_ == Protocol::kUdp && state != kClosed && HasTarget();
        RefuseIf(state != kConnected && !sendsToTarget, failure::kWrongProtocolOrState,
                 "There is nobody to send to");
        sent.push_back(text);
    }
    std::string GetData() override { return Read("GetData", std::string()); }
    void Close() override
    {
        Call("Close");
        state = kClosed;
    }

    /// A peer asks to be connected.
    void Request(RequestId request)
    {
        request_ = request;
        OnConnectionRequest(request);
    }

    SocketState state = kClosed;
    std::vector<std::string> sent;

private:
    void RequireClosed() const
    {
        RefuseIf(state != kClosed, failure::kInvalidOperationAtCurrentState, "The control is not closed");
    }
    [[nodiscard]] std::int32_t PortOf(const std::string& text) const
    {
        const std::int32_t port = ToLong(text, PlainFormats());
        RequirePort(port);
        return port;
    }
    [[nodiscard]] bool HasTarget() const { return !remoteHost_.empty() && remotePort_ != 0; }
    void ConnectToTarget()
    {
        RequireClosed();
        RefuseIf(!HasTarget(), failure::kAddressNotAvailable, "There is no target");
        state = protocol_ == Protocol::kUdp ? kConnected : kConnecting;
    }

    Protocol protocol_ = Protocol::kTcp;
    std::string remoteHost_;
    std::int32_t remotePort_ = 0;
    std::optional<RequestId> request_;
};

class Multicast : public MulticastControl, private SocketComponent {
public:
    Multicast(Journal& journal, const std::string& name) : SocketComponent(journal, name) {}

    void OpenGroup(const std::string& groupAddress, std::int32_t port) override
    {
        Call("OpenGroup", groupAddress + " " + std::to_string(port));
        RequireGroup(groupAddress, port);
        closed_ = false;
    }
    void CloseGroup() override
    {
        Call("CloseGroup");
        closed_ = true;
    }
    void SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                     std::int32_t port) override
    {
        Call("SendToGroup", groupAddress + " " + std::to_string(port));
        RequireGroup(groupAddress, port);
        RefuseIf(closed_, failure::kWrongProtocolOrState, "The group is closed");
        sent.emplace_back(bytes.begin(), bytes.end());
    }

    std::vector<std::string> sent;

private:
    /// Enough for the addresses of tests: IPv4 from 224 to 239, IPv6 with "ff" in front.
    void RequireGroup(const std::string& address, std::int32_t port) const
    {
        RefuseIf(!address.starts_with("ff") && (address < "224." || address >= "240"),
                 failure::kInvalidPropertyValue, "\"" + address + "\" is no group");
        RequirePort(port, 1);
    }

    bool closed_ = false;
};

class EventQueue : public platform::EventQueue, private Journaled {
public:
    EventQueue(Journal& journal, const std::string& name) : Journaled(journal, name) {}
    void ProcessPending() override
    {
        Call("ProcessPending");
        if (onPass)
            onPass();
    }

    std::function<void()> onPass;  // what the network or the operator does in a pause
};

}  // namespace platform::fakes
