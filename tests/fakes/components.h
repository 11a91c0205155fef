#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "fakes/journal.h"
#include "platform/event_queue.h"
#include "platform/multicast_control.h"
#include "platform/winsock_control.h"

/// The socket components and the event queue, held in memory: a program plays the network by setting `state`
/// and raising the events.
namespace platform::fakes {

class Winsock : public WinsockControl, private Journaled {
public:
    Winsock(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    void SetProtocol(Protocol protocol) override
    {
        Call("SetProtocol", protocol == Protocol::kTcp ? "TCP" : "UDP");
    }
    void SetRemoteHost(const std::string& host) override { Call("SetRemoteHost", host); }
    void SetRemotePort(std::int32_t port) override { Call("SetRemotePort", std::to_string(port)); }
    void SetLocalPort(std::int32_t port) override { Call("SetLocalPort", std::to_string(port)); }
    [[nodiscard]] std::int16_t State() const override
    {
        Call("State");
        return state;
    }
    void Connect() override { Move("Connect", kConnecting); }
    void Connect(const std::string& host, const std::string& port) override
    {
        Move("Connect " + host + " " + port, kConnecting);
    }
    void Listen() override { Move("Listen", kListening); }
    void Accept(RequestId request) override { Move("Accept " + std::to_string(request), kConnected); }
    void Bind(const std::string& port) override { Move("Bind " + port, kOpen); }
    void SendData(const std::string& text) override
    {
        Call("SendData", text);
        sent.push_back(text);
    }
    std::string GetData() override
    {
        Call("GetData");
        return {};
    }
    void Close() override { Move("Close", kClosed); }

    std::int16_t state = kClosed;
    std::vector<std::string> sent;

private:
    void Move(const std::string& call, std::int16_t newState)
    {
        Call(call);
        state = newState;
    }
};

class Multicast : public MulticastControl, private Journaled {
public:
    Multicast(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    void OpenGroup(const std::string& groupAddress, std::int32_t port) override
    {
        Call("OpenGroup", groupAddress + " " + std::to_string(port));
    }
    void CloseGroup() override { Call("CloseGroup"); }
    void SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                     std::int32_t port) override
    {
        Call("SendToGroup", groupAddress + " " + std::to_string(port));
        sent.emplace_back(bytes.begin(), bytes.end());
    }

    std::vector<std::string> sent;
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
