#include "play/sink.h"

#include <arpa/inet.h>
#include <netinet/tcp.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace bench {
namespace {

using platform::FileDescriptor;

constexpr int kMostEvents = 256;

sockaddr_in AddressOf(std::uint16_t port)
{
    return {
        .sin_family = AF_INET, .sin_port = htons(port), .sin_addr = {htonl(INADDR_LOOPBACK)}, .sin_zero = {}};
}

void Require(bool done, const char* what)
{
    if (done)
        return;
    std::perror(what);
    std::exit(1);
}

[[noreturn]] void Drain(const FileDescriptor& listening)
{
    const FileDescriptor epoll(epoll_create1(EPOLL_CLOEXEC));
    epoll_event wanted{.events = EPOLLIN, .data = {.fd = listening.Number()}};
    epoll_ctl(epoll.Number(), EPOLL_CTL_ADD, listening.Number(), &wanted);
    std::vector<char> buffer(std::size_t{1} << 20);
    std::array<epoll_event, kMostEvents> ready;
    while (true) {
        const int count = epoll_wait(epoll.Number(), ready.data(), kMostEvents, -1);
        for (int i = 0; i < count; ++i) {
            const int descriptor = ready[static_cast<std::size_t>(i)].data.fd;
            if (descriptor == listening.Number()) {
                epoll_event peer{.events = EPOLLIN, .data = {.fd = ::accept(descriptor, nullptr, nullptr)}};
                epoll_ctl(epoll.Number(), EPOLL_CTL_ADD, peer.data.fd, &peer);
            } else if (::recv(descriptor, buffer.data(), buffer.size(), 0) <= 0) {
                ::close(descriptor);
            }
        }
    }
}

}  // namespace

FileDescriptor Listening(std::uint16_t port)
{
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    ::setsockopt(socket.Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    const sockaddr_in address = AddressOf(port);
    Require(::bind(socket.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0,
            "bind");
    Require(::listen(socket.Number(), SOMAXCONN) == 0, "listen");
    return socket;
}

FileDescriptor Connected(std::uint16_t port)
{
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = AddressOf(port);
    Require(::connect(socket.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0,
            "connect");
    const int on = 1;
    ::setsockopt(socket.Number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return socket;
}

std::chrono::steady_clock::time_point FirstByte(const FileDescriptor& listening, int connections)
{
    std::vector<FileDescriptor> peers;
    for (int i = 0; i < connections; ++i)
        peers.emplace_back(::accept(listening.Number(), nullptr, nullptr));
    char first = 0;
    Require(::recv(peers.back().Number(), &first, 1, 0) == 1, "recv");
    return std::chrono::steady_clock::now();
}

Sink::Sink(std::uint16_t port)
{
    const FileDescriptor listening = Listening(port);
    process_ = ::fork();
    if (process_ == 0)
        Drain(listening);
}

Sink::~Sink()
{
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

}  // namespace bench
