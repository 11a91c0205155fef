#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace platform {

/// State of a socket. The numbers stand in the status line that tells of it.
enum class SocketState : std::int16_t {
    kClosed = 0,
    kOpen = 1,
    kListening = 2,
    kConnecting = 6,
    kConnected = 7,
    kError = 9,
};

/// One socket, TCP as client or as server of one peer, or UDP, as the program's logic sees it.
///
/// Failure:   a call that cannot be carried out throws Failure and leaves State() as it was. What the network
///            does later arrives as OnError. Calls never block.
/// Events:    raised from the event loop through the gate, never inside a call on this object, and none after
///            Close; a handler may call anything here. OnError is held back until 500 ms after the one before,
///            so that a handler that connects anew makes no storm. State() is kError from the failure on. Close
///            drops an error that is held back.
/// Ownership: the handlers are set once and live as long as the control.
/// Text:      UTF-8 here, one byte a character in code page 1252 on the wire, "?" for what that lacks.
class WinsockControl {
public:
    enum class Protocol { kTcp = 0, kUdp = 1 };

    using enum SocketState;

    using RequestId = std::int32_t;

    virtual ~WinsockControl() = default;

    /// Takes effect with the next Connect, Listen or Bind. Failure: kInvalidOperationAtCurrentState on a
    /// control that is not closed.
    virtual void SetProtocol(Protocol protocol) = 0;

    /// Target of Connect without arguments and of UDP sends: a host name, or an IPv4 or IPv6 address.
    virtual void SetRemoteHost(const std::string& host) = 0;

    /// Failure: kInvalidPropertyValue for a port outside 0 to 65535, here and in SetLocalPort.
    virtual void SetRemotePort(std::int32_t port) = 0;

    /// The port on which Listen waits; 0 is any free port.
    virtual void SetLocalPort(std::int32_t port) = 0;

    [[nodiscard]] virtual SocketState State() const = 0;

    /// TCP: starts a connection; State() is kConnecting until it is up or has failed.
    /// UDP: remembers the target, without OnConnect. With an address State() is kConnected at once; with a name
    /// it is kConnecting until that is found.
    /// Failure: kInvalidOperationAtCurrentState on a control that is not closed; kAddressNotAvailable for an
    /// empty host or port 0.
    virtual void Connect() = 0;

    /// Connect to this host and port, which become the target. Failure: as ToLong for the port's text; as
    /// SetRemotePort; as Connect.
    virtual void Connect(const std::string& host, const std::string& port) = 0;

    /// TCP: waits for peers on the local port, on all addresses. UDP: opens the local port; each datagram
    /// that arrives makes its sender the target. Failure: kInvalidOperationAtCurrentState, kAddressInUse and
    /// the like.
    virtual void Listen() = 0;

    /// Takes over the connection of the peer that OnConnectionRequest announced. The Close that comes before it
    /// refuses the other peers that wait. Failure: kWrongProtocolOrState where there is no such request;
    /// kInvalidOperationAtCurrentState.
    virtual void Accept(RequestId request) = 0;

    /// Opens the local port for UDP; State() becomes kOpen. Failure: as ToLong for the port's text; as Listen.
    virtual void Bind(const std::string& port) = 0;

    /// Hands one text to the network: into the stream, or as one datagram. Nothing is added, nothing is cut.
    /// A text that a slow TCP peer has not taken waits in memory. Where more than 64 MiB would wait, what waits in
    /// connections closed before included, the text is refused whole (kSocketWouldBlock). Failure: kWrongProtocolOrState with no
    /// connection or target; kMessageTooLong.
    virtual void SendData(const std::string& text) = 0;

    /// Takes out the data that has arrived, as the bytes that came. Of more than 1 MiB only the last is kept.
    virtual std::string GetData() = 0;

    /// Closes whatever is open; State() is kClosed at once. What was accepted for sending still goes out in
    /// the background. On a closed control it does nothing.
    virtual void Close() = 0;

    std::function<void()> OnConnect;
    std::function<void(RequestId)> OnConnectionRequest;
    std::function<void(std::size_t bytes)> OnDataArrival;
    std::function<void()> OnClose;
    std::function<void(int number, const std::string& description)> OnError;
};

}  // namespace platform
