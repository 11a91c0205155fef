#pragma once

#include <memory>

#include "platform/posix/file_descriptor.h"
#include "record/dialer.h"
#include "record/source.h"
#include "record/tcp_sender.h"

namespace record {

/// Waits for tills that connect. One is served at a time; the next waits until it has gone.
class TcpListenSource final : public Source {
public:
    explicit TcpListenSource(const Surroundings& surroundings);

    void Finish() override;

private:
    void AcceptOne();
    void SenderIsGone();

    Surroundings around_;
    platform::FileDescriptor socket_;
    platform::sockets::RestingWatch readable_;
    bool saidThatNobodyCanCome_ = false;
    std::unique_ptr<TcpSender> sender_;
};

/// Connects to a till, and again when it has gone.
class TcpConnectSource final : public Source {
public:
    explicit TcpConnectSource(const Surroundings& surroundings);

    void Finish() override;

private:
    void Connected(platform::FileDescriptor socket);
    void AttemptFailed(const std::string& reason);
    void SenderIsGone();

    Surroundings around_;
    Dialer dialer_;
    bool saidThatItIsAway_ = false;
    std::unique_ptr<TcpSender> sender_;
};

}  // namespace record
