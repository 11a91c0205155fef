#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/sockets/tcp_stream.h"
#include "record/stream_intake.h"
#include "record/tap.h"

namespace record {

/// A till that is connected and whose stream is recorded, and passed on where a tap is wanted.
class TcpSender {
public:
    /// `gone` comes from the event loop when the till has gone and its last record is in the file. It may
    /// destroy this object.
    TcpSender(const Surroundings& surroundings, platform::FileDescriptor socket, std::function<void()> gone);

    void Finish() { intake_.Finish(); }

private:
    using Outcome = StreamIntake::Outcome;

    [[nodiscard]] Outcome Read();
    void TakeBytes(std::string_view bytes);
    void SendAnswer(std::string_view bytes);
    void HasEnded(const std::string& how);

    Surroundings around_;
    std::string name_;
    std::function<void()> gone_;
    std::size_t answersWaiting_ = 0;
    platform::sockets::TcpStream stream_;
    std::vector<char> buffer_;
    StreamIntake intake_;
    std::unique_ptr<Tap> tap_;
    std::optional<platform::sockets::RestingWatch> readable_;
};

}  // namespace record
