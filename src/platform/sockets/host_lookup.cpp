#include "platform/sockets/host_lookup.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <thread>
#include <utility>

#include "platform/sockets/socket_error.h"

namespace platform::sockets {

void HostLookup::Start(const std::string& host, Answer answer)
{
    if (!running_ || running_->host != host) {
        auto finished = std::make_shared<FileDescriptor>(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        if (!finished->IsOpen())
            throw SocketFailure(errno, "Cannot look up host " + host);
        std::promise<std::vector<SocketAddress>> promise;
        auto addresses = promise.get_future();
        std::thread([host, finished, promise = std::move(promise)]() mutable {
            promise.set_value(AddressesOfHost(host));
            ::eventfd_write(finished->Number(), 1);
        }).detach();
        running_.reset(
            new Running{host, std::move(addresses), finished,
                        GatedNotifier(gate_, *finished, QSocketNotifier::Read, [this] { Finish(); })});
    }
    answer_ = std::move(answer);
}

void HostLookup::Finish()
{
    const auto finished = std::exchange(running_, nullptr);
    if (const Answer answer = std::exchange(answer_, nullptr))
        answer(finished->addresses.get());
}

}  // namespace platform::sockets
