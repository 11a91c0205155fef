#include "play/signals.h"

#include <signal.h>
#include <sys/signalfd.h>

#include <utility>

namespace player {
namespace {

sigset_t Caught()
{
    sigset_t signals;
    ::sigemptyset(&signals);
    ::sigaddset(&signals, SIGINT);
    ::sigaddset(&signals, SIGTERM);
    return signals;
}

int BlockAndOpen()
{
    const sigset_t signals = Caught();
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
}

}  // namespace

Signals::Signals(platform::EventLoop& loop, std::function<void(int signal)> caught)
    : caught_(std::move(caught)),
      descriptor_(BlockAndOpen()),
      readable_(loop.Observe(descriptor_.Number(), platform::Readiness::kReadable, [this] { Read(); }))
{
    ::signal(SIGPIPE, SIG_IGN);
    ::signal(SIGXFSZ, SIG_IGN);
}

Signals::~Signals()
{
    readable_.reset();
    const sigset_t signals = Caught();
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

void Signals::Read()
{
    signalfd_siginfo signal{};
    if (::read(descriptor_.Number(), &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal))
        caught_(static_cast<int>(signal.ssi_signo));
}

}  // namespace player
