#pragma once

#include <chrono>
#include <functional>

#include "platform/posix/epoll_loop.h"

namespace platform::sockets {

/// What goes on while a test waits: passes of an event loop.
class TestLoop {
public:
    virtual ~TestLoop() = default;

    /// Runs the event loop until the condition holds. False when it does not within a time that nothing here
    /// takes.
    [[nodiscard]] bool WaitFor(const std::function<bool()>& condition);

    /// Runs the event loop until it has nothing left to do. False when it never comes to rest.
    [[nodiscard]] bool ComesToRest();

protected:
    /// One pass, which waits at most so long for something to happen.
    virtual void RunPass(std::chrono::milliseconds longest) = 0;

    /// A pass without waiting. False where there was nothing to do.
    virtual bool RunDuePass() = 0;
};

/// The event loop of programs without a window.
class EpollTestLoop final : public TestLoop {
public:
    posix::EpollLoop loop;

protected:
    void RunPass(std::chrono::milliseconds longest) override;
    bool RunDuePass() override;
};

}  // namespace platform::sockets
