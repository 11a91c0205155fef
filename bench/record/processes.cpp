#include "record/processes.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace bench {
namespace {

using platform::FileDescriptor;

sockaddr_in Loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

FileDescriptor OpenTcp()
{
    FileDescriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const int on = 1;
    ::setsockopt(socket.Number(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return socket;
}

}  // namespace

Process::Process(const std::vector<std::string>& words) : process_(::fork())
{
    if (process_ != 0)
        return;
    std::vector<char*> arguments;
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    ::execvp(arguments[0], arguments.data());
    ::_exit(127);
}

Process::~Process()
{
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

std::size_t Process::ResidentBytes() const
{
    std::ifstream statistics("/proc/" + std::to_string(process_) + "/statm");
    std::size_t allPages = 0;
    std::size_t residentPages = 0;
    statistics >> allPages >> residentPages;
    return residentPages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

FileDescriptor ConnectTo(std::uint16_t port)
{
    const sockaddr_in address = Loopback(port);
    for (int attempt = 0; attempt < 10'000; ++attempt) {
        FileDescriptor socket = OpenTcp();
        if (::connect(socket.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
            return socket;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    throw std::runtime_error("nobody listens");
}

FileDescriptor Listen(std::uint16_t& port)
{
    FileDescriptor socket = OpenTcp();
    sockaddr_in address = Loopback(0);
    socklen_t size = sizeof address;
    ::bind(socket.Number(), reinterpret_cast<const sockaddr*>(&address), size);
    ::getsockname(socket.Number(), reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    if (::listen(socket.Number(), 1) != 0)
        throw std::runtime_error("cannot listen");
    return socket;
}

void SendAll(const FileDescriptor& socket, const std::string& bytes)
{
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(socket.Number(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            throw std::runtime_error("the receiver is gone");
        sent += static_cast<std::size_t>(count);
    }
}

}  // namespace bench
