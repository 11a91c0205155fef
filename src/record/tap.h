#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/sockets/tcp_stream.h"
#include "record/dialer.h"

namespace record {

/// Passes one sender's stream on to the real receiver, and the receiver's answers back.
///
/// The receiver gets whole records in their order. What it cannot take, because it is away or too slow, is left
/// out record by record and counted; nothing here makes the sender or the recording wait. A receiver that has
/// gone is tried again until it is back. What comes before the first attempt has ended waits for its end.
class Tap {
public:
    /// While so many bytes wait for the receiver, no further record is begun.
    static constexpr std::size_t kMostWaiting = std::size_t{4} << 20;

    struct Events {
        /// Answers of the receiver, for the sender.
        std::function<void(std::string_view bytes)> answered;
        /// After Finish: all was passed on and the receiver has ended too, or had its time for it. It may
        /// destroy the tap.
        std::function<void()> finished;
    };

    Tap(const Surroundings& surroundings, const HostAndPort& receiver, Events events);
    ~Tap();

    /// Passes on what has just been read. `recordBegin` is where in it the first record begins, if one does.
    void PassOn(std::string_view bytes, std::optional<std::size_t> recordBegin);

    /// Whether answers are read: not while the sender takes none.
    void SetAnswersWanted(bool wanted);

    /// The sender has ended.
    void Finish();

private:
    [[nodiscard]] bool CanBeginRecord();
    void Send(std::string_view bytes);
    void LeaveOut(std::size_t bytes);
    void Connected(platform::FileDescriptor socket);
    void AttemptFailed(const std::string& reason);
    void ConnectionIsLost(const std::error_code& error);
    void ReadAnswers();
    void ReceiverIsGone(const std::string& reason);
    void FinishIfDone();

    Surroundings around_;
    Events events_;
    std::string name_;  // of the receiver, as it shows
    Dialer dialer_;
    std::vector<char> buffer_;
    std::size_t waiting_ = 0;  // bytes that the receiver's stream has not yet handed to the system
    std::optional<std::string> early_ = std::string();  // until the first attempt has ended
    std::unique_ptr<platform::sockets::TcpStream> receiver_;
    std::optional<platform::sockets::RestingWatch> readable_;
    bool answersWanted_ = true;
    bool isInRecord_ = false;  // the receiver has got the begin of the record under way
    bool isTooSlow_ = false;
    bool saidTooSlow_ = false;  // of this connection
    bool isFinishing_ = false;
    std::unique_ptr<platform::Alarm> farewell_;
    std::unique_ptr<platform::Alarm> broken_;  // when a send has found the connection broken
};

}  // namespace record
