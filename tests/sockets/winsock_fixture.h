#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/clock_and_formats.h"
#include "platform/event_gate.h"
#include "platform/failure.h"
#include "platform/sockets/winsock.h"
#include "sockets/epoll_test_loop.h"
#include "support/failure_of.h"
#include "support/peer.h"

namespace platform::sockets {

/// A control whose events are written down. As in the program, a request is accepted, and what has ended or
/// failed is closed, unless the test sets a handler of its own.
class WinsockTest : public testing::Test {
protected:
    using Events = std::vector<std::string>;

    WinsockTest()
    {
        socket.OnConnect = [this] { events.emplace_back("connect"); };
        socket.OnConnectionRequest = [this](WinsockControl::RequestId request) {
            events.emplace_back("request");
            socket.Close();
            socket.Accept(request);
        };
        socket.OnDataArrival = [this](std::size_t) { events.push_back("data " + socket.GetData()); };
        socket.OnClose = [this] {
            events.emplace_back("close");
            socket.Close();
        };
        socket.OnError = [this](int number, const std::string& description) {
            events.push_back("error " + std::to_string(number));
            lastError = description;
            stateInError = socket.State();
            socket.Close();
        };
    }

    void TearDown() override
    {
        socket.Close();  // no handler of the test's runs after it
        EXPECT_TRUE(loop.ComesToRest()) << "the event loop spins";
    }

    Peer ConnectedPeer()
    {
        Peer listening = Peer::Listening(loop);
        socket.Connect("127.0.0.1", listening.PortText());
        Peer peer = listening.Accepted();
        EXPECT_TRUE(loop.WaitFor([&] { return socket.State() == WinsockControl::kConnected; }));
        events.clear();
        return peer;
    }

    [[nodiscard]] bool Happens(const std::string& event)
    {
        return loop.WaitFor([&] { return !events.empty() && events.back() == event; });
    }

    EventGate gate;
    fakes::PlainFormats formats;
    EpollTestLoop loop;
    Winsock socket{gate, loop.loop, formats};
    Events events;
    std::string lastError;
    SocketState stateInError = SocketState::kClosed;
};

}  // namespace platform::sockets
