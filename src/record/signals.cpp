#include "record/signals.h"

#include <fcntl.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace record {
namespace {

bool IsIgnored(int signal)
{
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
}

/// Blocked in this thread and those that it starts, so that they wait for the descriptor.
int OpenSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM})
        sigaddset(&signals, signal);
    if (!IsIgnored(SIGHUP))
        sigaddset(&signals, SIGHUP);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return ::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
}

}  // namespace

EndSignals::EndSignals(platform::EventLoop& loop, std::function<void()> react)
    : descriptor_(OpenSignals()), react_(std::move(react))
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    readable_ = loop.Observe(descriptor_.Number(), platform::Readiness::kReadable, [this] {
        signalfd_siginfo signal{};
        if (::read(descriptor_.Number(), &signal, sizeof signal) == sizeof signal)
            react_();
    });
}

void OpenStandardDescriptors()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) == -1)
            static_cast<void>(::open("/dev/null", O_RDWR));
    }
}

}  // namespace record
