#pragma once

#include <chrono>
#include <functional>
#include <thread>

/// What goes on while a test waits: passes of an event loop, or nothing but time.
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

/// For tests of another process, which runs a loop of its own.
class NoLoop final : public TestLoop {
protected:
    void RunPass(std::chrono::milliseconds longest) override { std::this_thread::sleep_for(longest); }
    bool RunDuePass() override { return false; }
};

/// The one that tests wait with; it has no state.
inline NoLoop noLoop;
