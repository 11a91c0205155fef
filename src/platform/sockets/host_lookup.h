#pragma once

#include <functional>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "platform/sockets/gated_events.h"
#include "platform/sockets/socket_address.h"

namespace platform::sockets {

/// Looks up host names without blocking, one at a time. A thread of its own asks the network; nothing waits
/// for it at the end of the program.
class HostLookup {
public:
    /// The addresses of the host, none where it was not found.
    using Answer = std::function<void(const std::vector<SocketAddress>& addresses)>;

    /// Both are borrowed and outlive it.
    HostLookup(EventGate& gate, EventLoop& loop) : gate_(gate), loop_(loop) {}

    /// The answer comes from the event loop through the gate and takes the place of an earlier one. A look-up
    /// of the same host that is still under way is joined, so that repeated calls do not pile up threads.
    void Start(const std::string& host, Answer answer);

    /// No answer will come.
    void Cancel() { answer_ = nullptr; }

private:
    struct Running {
        std::string host;
        std::future<std::vector<SocketAddress>> addresses;
        std::shared_ptr<FileDescriptor> finished;
        GatedWatch watch;
    };

    void Finish();

    EventGate& gate_;
    EventLoop& loop_;
    Answer answer_;
    std::unique_ptr<Running> running_;
};

}  // namespace platform::sockets
