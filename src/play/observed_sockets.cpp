#include "play/observed_sockets.h"

#include <algorithm>

#include "platform/event_gate.h"
#include "platform/failure.h"

namespace player {

using platform::Failure;
using platform::Raise;

namespace {

/// On the wire each character is one byte.
std::size_t BytesOf(const std::string& text)
{
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char byte) { return (byte & 0xC0) != 0x80; }));
}

bool IsWithoutRoom(const Failure& failure)
{
    return failure.Number() == platform::failure::kSocketWouldBlock ||
           failure.Number() == platform::failure::kNoBufferSpace;
}

/// False where the datagram found no room and is to be sent again.
template <class Send>
bool SentAsDatagram(DatagramRoom& room, const Send& send)
{
    try {
        send();
    } catch (const Failure& failure) {
        room.isFull = room.isAwaited && IsWithoutRoom(failure);
        if (!room.isFull)
            throw;
    }
    return !room.isFull;
}

}  // namespace

ObservedWinsock::ObservedWinsock(platform::WinsockControl& real, Tally& tally, DatagramRoom& room,
                                 const Events& events)
    : real_(real), tally_(tally), room_(room), events_(events)
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
    if (IsTcp())
        SendOnConnection(text);
    else if (!SentAsDatagram(room_, [&] { real_.SendData(text); }))
        return;
    tally_.HandedOver(BytesOf(text), IsTcp());
}

void ObservedWinsock::SendOnConnection(const std::string& text)
{
    try {
        real_.SendData(text);
    } catch (const Failure& failure) {
        // Without room the next record may go out.
        isBroken_ = failure.Number() != platform::failure::kSocketWouldBlock;
        throw;
    }
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

ObservedMulticast::ObservedMulticast(platform::MulticastControl& real, Tally& tally, DatagramRoom& room)
    : real_(real), tally_(tally), room_(room)
{
    real_.OnError = [this](int number, const std::string& description) {
        tally_.Dropped();
        Raise(OnError, number, description);
    };
}

void ObservedMulticast::SendToGroup(const std::vector<std::uint8_t>& bytes, const std::string& groupAddress,
                                    std::int32_t port)
{
    if (SentAsDatagram(room_, [&] { real_.SendToGroup(bytes, groupAddress, port); }))
        tally_.HandedOver(bytes.size(), false);
}

}  // namespace player
