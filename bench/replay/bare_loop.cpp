#include "replay/bare_loop.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <string>

#include "platform/sockets/socket_address.h"

namespace bench {
namespace {

using platform::FileDescriptor;

FileDescriptor ConnectedTo(Protocol protocol, std::uint16_t port)
{
    auto target = *platform::sockets::AddressFromText(AddressFor(protocol));
    target.SetPort(port);
    FileDescriptor socket(::socket(AF_INET, protocol == Protocol::kTcp ? SOCK_STREAM : SOCK_DGRAM, 0));
    ::connect(socket.Number(), target.Data(), target.Size());
    if (protocol == Protocol::kTcp) {
        const int on = 1;
        ::setsockopt(socket.Number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    }
    return socket;
}

FileDescriptor PeriodicTimer(std::chrono::milliseconds interval)
{
    FileDescriptor timer(::timerfd_create(CLOCK_MONOTONIC, 0));
    const timespec period{.tv_sec = 0, .tv_nsec = std::chrono::nanoseconds(interval).count()};
    const itimerspec schedule{.it_interval = period, .it_value = period};
    ::timerfd_settime(timer.Number(), 0, &schedule, nullptr);
    return timer;
}

}  // namespace

void RunBareLoop(Protocol protocol, std::uint16_t port, std::size_t recordSize,
                 std::chrono::milliseconds interval, std::chrono::seconds duration)
{
    const std::string record(recordSize, 'x');
    const FileDescriptor socket = ConnectedTo(protocol, port);
    const FileDescriptor timer = PeriodicTimer(interval);
    const auto end = std::chrono::steady_clock::now() + duration;
    while (std::chrono::steady_clock::now() < end) {
        std::uint64_t expirations = 0;
        if (::read(timer.Number(), &expirations, sizeof expirations) < 0)
            return;
        for (; expirations > 0; --expirations)
            ::send(socket.Number(), record.data(), record.size(), 0);
    }
}

}  // namespace bench
