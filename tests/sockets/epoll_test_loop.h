#pragma once

#include <poll.h>

#include "platform/posix/epoll_loop.h"
#include "support/test_loop.h"

namespace platform::sockets {

/// The event loop of programs without a window.
class EpollTestLoop final : public TestLoop {
public:
    posix::EpollLoop loop;

protected:
    void RunPass(std::chrono::milliseconds longest) override
    {
        const auto end = loop.NewAlarm([] {});
        end->Set(std::chrono::steady_clock::now() + longest);
        loop.RunPass(Waiting::kYes);
    }

    bool RunDuePass() override
    {
        pollfd due{.fd = loop.Descriptor(), .events = POLLIN, .revents = 0};
        if (::poll(&due, 1, 0) == 0)
            return false;
        loop.RunPass(Waiting::kNo);
        return true;
    }
};

}  // namespace platform::sockets
