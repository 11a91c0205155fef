#include "sockets/loop_helpers.h"

#include <poll.h>

namespace platform::sockets {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kDeadline{20000};
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

void EpollTestLoop::RunPass(std::chrono::milliseconds longest)
{
    const auto end = loop.NewAlarm([] {});
    end->Set(Clock::now() + longest);
    loop.RunPass(Waiting::kYes);
}

bool EpollTestLoop::RunDuePass()
{
    pollfd due{.fd = loop.Descriptor(), .events = POLLIN, .revents = 0};
    if (::poll(&due, 1, 0) == 0)
        return false;
    loop.RunPass(Waiting::kNo);
    return true;
}

}  // namespace platform::sockets
