#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "fakes/journal.h"
#include "platform/event_gate.h"
#include "platform/multicast_control.h"
#include "platform/winsock_control.h"

/// The socket components and the event queue, held in memory: a test plays the network by setting `state` and raising
/// the events. A call is refused where the interface says so.
namespace platform::fakes {

class Winsock : public WinsockControl, private Journaled {
public:
    Winsock(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    void SetProtocol(Protocol newProtocol) override;
    void SetRemoteHost(const std::string& host) override;
    void SetRemotePort(std::int32_t port) override;
    void SetLocalPort(std::int32_t port) override;
    [[nodiscard]] SocketState State() const override;
    void Connect() override;
    void Connect(const std::string& host, const std::string& port) override;
    void Listen() override;
    void Accept(RequestId request) override;
    void Bind(const std::string& port) override;
    void SendData(const std::string& text) override;
    std::string GetData() override;
    void Close() override;

    /// A peer asks to be connected.
    void Request(RequestId request);

    SocketState state = kClosed;
    std::vector<std::string> sent;

private:
    void RequireClosed() const;
    void RequirePort(std::int32_t port) const;
    [[nodiscard]] bool HasTarget() const { return !remoteHost_.empty() && remotePort_ != 0; }
    void ConnectToTarget();

    Protocol protocol_ = Protocol::kTcp;
    std::string remoteHost_;
    std::int32_t remotePort_ = 0;
    std::optional<RequestId> request_;
};

class Multicast : public MulticastControl, private Journaled {
public:
    Multicast(Journal& journal, const std::string& name) : Journaled(journal, name) {}

    void OpenGroup(const std::string& groupAddress, std::int32_t port) override;
    void CloseGroup() override;
    void SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                     std::int32_t port) override;

    std::vector<std::string> sent;

private:
    void RequireGroup(const std::string& address, std::int32_t port) const;

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
