#include "platform/posix/signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <utility>

#include "platform/failure.h"
#include "platform/posix/system_calls.h"

namespace platform::posix {
namespace {

sigset_t SetOf(std::initializer_list<int> numbers)
{
    sigset_t signals;
    ::sigemptyset(&signals);
    for (const int number : numbers)
        ::sigaddset(&signals, number);
    return signals;
}

int BlockAndOpen(const sigset_t& signals)
{
    const int descriptor = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
    if (descriptor < 0)
        throw Failure(failure::kOutOfMemory, "The system gives no descriptor for signals");
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return descriptor;
}

}  // namespace

Signals::Signals(EventLoop& loop, std::initializer_list<int> numbers, std::function<void(int signal)> caught)
    : caught_(std::move(caught)),
      signals_(SetOf(numbers)),
      descriptor_(BlockAndOpen(signals_)),
      readable_(loop.Observe(descriptor_.Number(), Readiness::kReadable, [this] { Read(); }))
{
    IgnoreFatalWriteSignals();
}

Signals::~Signals()
{
    readable_.reset();
    ::pthread_sigmask(SIG_UNBLOCK, &signals_, nullptr);
}

void Signals::Read()
{
    signalfd_siginfo signal{};
    if (::read(descriptor_.Number(), &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal))
        caught_(static_cast<int>(signal.ssi_signo));
}

bool WasIgnored(int signal)
{
    struct sigaction action {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace platform::posix
