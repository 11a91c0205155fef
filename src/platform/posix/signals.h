#pragma once

#include <signal.h>

#include <functional>
#include <initializer_list>
#include <memory>

#include "platform/event_loop.h"
#include "platform/posix/file_descriptor.h"

namespace platform::posix {

/// Signals that would end the program, as events of the loop. Make it before any thread is started: those that come
/// later must not be ended by the signals either. SIGPIPE and SIGXFSZ, which would end the program for a reader that
/// went away or a disk that is full, are ignored.
class Signals {
public:
    /// The loop outlives this object. Failure: kOutOfMemory.
    Signals(EventLoop& loop, std::initializer_list<int> numbers, std::function<void(int signal)> caught);
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;
    /// From here on the signals end the program again.
    ~Signals();

private:
    void Read();

    std::function<void(int signal)> caught_;
    sigset_t signals_;
    FileDescriptor descriptor_;
    std::unique_ptr<Watch> readable_;
};

/// Whether the program was started with this signal ignored, as nohup does.
[[nodiscard]] bool WasIgnored(int signal);

}  // namespace platform::posix
