#include "play/observed_sockets.h"

#include <algorithm>

#include "platform/failure.h"

namespace player {

using platform::Failure;

namespace {

template <class Handler, class... Arguments>
void Raise(const Handler& handler, const Arguments&... arguments)
{
    if (handler)
        handler(arguments...);
}

/// On the wire each character is one byte.
std::size_t BytesOf(const std::string& text)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

}  // namespace

ObservedWinsock::ObservedWinsock(platform::WinsockControl& real, Tally& tally, const Events& events)
    : real_(real), tally_(tally), events_(events)
{
    real_.OnConnect = [this] {
        tally_.Connected();
        Raise(OnConnect);
        events_.changed();
    };
    real_.OnConnectionRequest = [this](RequestId request) {
        Raise(OnConnectionRequest, request);
        events_.changed();
    };
    real_.OnDataArrival = [this](std::size_t bytes) { DataArrived(bytes); };
    real_.OnClose = [this] {
        isBroken_ = false;
        events_.ended();
        Raise(OnClose);
        events_.changed();
    };
    real_.OnError = [this](int number, const std::string& description) {
        isBroken_ = false;
        Raise(OnError, number, description);
        events_.changed();
    };
}

void ObservedWinsock::SetProtocol(Protocol protocol)
{
    real_.SetProtocol(protocol);
    protocol_ = protocol;
}

void ObservedWinsock::Accept(RequestId request)
{
    real_.Accept(request);
    tally_.Connected();
}

void ObservedWinsock::SendData(const std::string& text)
{
    try {
        real_.SendData(text);
    } catch (const Failure& failure) {
        // Without room, or with text that fits into no datagram, the next record may go out.
        isBroken_ = IsTcp() && failure.Number() != platform::failure::kSocketWouldBlock;
        throw;
    }
    tally_.HandedOver(BytesOf(text), IsTcp());
}

void ObservedWinsock::Close()
{
    isBroken_ = false;
    real_.Close();
}

bool ObservedWinsock::HasReceiver() const
{
    const platform::SocketState state = real_.State();
    return (state == kConnected && !isBroken_) || (!IsTcp() && state == kListening && heard_);
}

void ObservedWinsock::DataArrived(std::size_t bytes)
{
    const bool isFirst = !IsTcp() && !heard_;
    heard_ = heard_ || !IsTcp();
    Raise(OnDataArrival, bytes);
    if (isFirst)
        events_.changed();
}

ObservedMulticast::ObservedMulticast(platform::MulticastControl& real, Tally& tally)
    : real_(real), tally_(tally)
{
    real_.OnError = [this](int number, const std::string& description) {
        tally_.Dropped();
        Raise(OnError, number, description);
    };
}

void ObservedMulticast::SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                                    std::int32_t port)
{
    real_.SendToGroup(bytes, groupAddress, port);
    tally_.HandedOver(bytes.size(), false);
}

}  // namespace player
