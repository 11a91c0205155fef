#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "platform/posix/file_descriptor.h"
#include "platform/sockets/host_lookup.h"
#include "platform/sockets/tcp_opening.h"
#include "record/source.h"

namespace record {

/// Connects to a host, again and again until it answers. Its events come from the event loop; each may destroy
/// it.
class Dialer {
public:
    static constexpr std::chrono::milliseconds kPause{500};

    struct Events {
        std::function<void(platform::FileDescriptor socket)> connected;
        /// One attempt was in vain, and the next follows after kPause. The reason is a sentence.
        std::function<void(const std::string& reason)> failed;
    };

    Dialer(const Surroundings& surroundings, HostAndPort target, Events events);

    /// Tries now. Not while an attempt is under way.
    void Start();

    /// Tries after kPause.
    void StartLater();

private:
    void Try(const std::function<void()>& step);
    void Connect(std::vector<platform::sockets::SocketAddress> addresses);
    void Connected(platform::FileDescriptor socket);
    void Failed(const std::string& reason);

    Surroundings around_;
    HostAndPort target_;
    Events events_;
    platform::sockets::HostLookup lookup_;
    std::unique_ptr<platform::sockets::TcpConnector> connector_;
    std::unique_ptr<platform::Alarm> next_;
    std::unique_ptr<platform::Alarm> patience_;
};

}  // namespace record
