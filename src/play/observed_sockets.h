#pragma once

#include <functional>
#include <string>

#include "platform/multicast_control.h"
#include "platform/winsock_control.h"
#include "play/tally.h"

namespace player {

/// The room that the network has for datagrams.
struct DatagramRoom {
    bool isAwaited = false;  // a record without room is played again, and the logic does not learn of it
    bool isFull = false;     // the last one found no room
};

/// The Winsock control that the logic is given: it passes every call and event on, counts what was handed over, and
/// tells the till when something has changed.
class ObservedWinsock final : public platform::WinsockControl {
public:
    struct Events {
        /// Behind the logic's handler of each event but that of arrived data on a connection.
        std::function<void()> changed;
        /// In front of the logic's handler: the peer has ended the connection in order.
        std::function<void()> ended;
    };

    /// All but the events outlive this object.
    ObservedWinsock(platform::WinsockControl& real, Tally& tally, DatagramRoom& room, const Events& events);

    void SetProtocol(Protocol protocol) override;
    void SetRemoteHost(const std::string& host) override { real_.SetRemoteHost(host); }
    void SetRemotePort(std::int32_t port) override { real_.SetRemotePort(port); }
    void SetLocalPort(std::int32_t port) override { real_.SetLocalPort(port); }
    [[nodiscard]] platform::SocketState State() const override { return real_.State(); }
    void Connect() override { real_.Connect(); }
    void Connect(const std::string& host, const std::string& port) override { real_.Connect(host, port); }
    void Listen() override { real_.Listen(); }
    void Accept(RequestId request) override;
    void Bind(const std::string& port) override { real_.Bind(port); }
    void SendData(const std::string& text) override;
    std::string GetData() override { return real_.GetData(); }
    void Close() override;

    /// True when a record that is sent now goes to somebody: a connection is up, or a UDP target is known.
    [[nodiscard]] bool HasReceiver() const;

    /// True when a record has just found its connection broken. Its event has not come yet.
    [[nodiscard]] bool IsBroken() const { return isBroken_; }

private:
    [[nodiscard]] bool IsTcp() const { return protocol_ == Protocol::kTcp; }
    void SendOnConnection(const std::string& text);
    void DataArrived(std::size_t bytes);

    platform::WinsockControl& real_;
    Tally& tally_;
    DatagramRoom& room_;
    Events events_;
    Protocol protocol_ = Protocol::kTcp;
    bool isBroken_ = false;
    bool heard_ = false;  // a datagram, whose sender is the target since
};

/// The multicast control that the logic is given: it counts what was handed over.
class ObservedMulticast final : public platform::MulticastControl {
public:
    /// As ObservedWinsock.
    ObservedMulticast(platform::MulticastControl& real, Tally& tally, DatagramRoom& room);

    void OpenGroup(const std::string& groupAddress, std::int32_t port) override
    {
        real_.OpenGroup(groupAddress, port);
    }
    void CloseGroup() override { real_.CloseGroup(); }
    void SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                     std::int32_t port) override;

private:
    platform::MulticastControl& real_;
    Tally& tally_;
    DatagramRoom& room_;
};

}  // namespace player
