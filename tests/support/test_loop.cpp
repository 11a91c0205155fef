#include "support/test_loop.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kDeadline{30};
constexpr std::chrono::milliseconds kLook{1};  // what a condition waits for may raise no event here
constexpr int kMostPasses = 1000;

}  // namespace

bool TestLoop::WaitFor(const std::function<bool()>& condition)
{
    const auto deadline = Clock::now() + kDeadline;
    while (!condition()) {
        if (Clock::now() > deadline)
            return false;
        RunPass(kLook);
    }
    return true;
}

bool TestLoop::ComesToRest()
{
    for (int pass = 0; pass < kMostPasses; ++pass) {
        if (!RunDuePass())
            return true;
    }
    return false;
}
