#include "platform/sockets/host_lookup.h"

#include <sys/eventfd.h>

#include <chrono>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/sockets/socket.h"

namespace platform::sockets {
namespace {

/// Nothing may be thrown out of a thread.
std::vector<SocketAddress> AddressesOrNone(const std::string& host) noexcept
{
    try {
        return AddressesOfHost(host);
    } catch (...) {
        return {};
    }
}

template <class Work>
void StartThread(const std::string& host, Work work)
{
    try {
        std::thread(std::move(work)).detach();
    } catch (const std::system_error& error) {
        throw SocketFailure(error.code(), "Cannot look up host " + host);
    }
}

}  // namespace

void HostLookup::Start(const std::string& host, Answer answer)
{
    if (!running_ || running_->host != host) {
        auto finished = std::make_shared<FileDescriptor>(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        const auto error = LastError();
        if (!finished->IsOpen())
            throw SocketFailure(error, "Cannot look up host " + host);
        std::promise<std::vector<SocketAddress>> promise;
        auto addresses = promise.get_future();
        StartThread(host, [host, finished, promise = std::move(promise)]() mutable {
            promise.set_value(AddressesOrNone(host));
            ::eventfd_write(finished->Number(), 1);
        });
        // Not make_unique: the watch cannot be moved, only made in its place.
        running_.reset(
            new Running{host, std::move(addresses), finished,
                        GatedWatch(gate_, loop_, *finished, Readiness::kReadable, [this] { Finish(); })});
    }
    answer_ = std::move(answer);
}

void HostLookup::Finish()
{
    if (running_->addresses.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        return;
    const auto finished = std::exchange(running_, nullptr);
    if (const Answer answer = std::exchange(answer_, nullptr))
        answer(finished->addresses.get());
}

}  // namespace platform::sockets
