#pragma once

#include <functional>
#include <memory>

#include "platform/event_loop.h"
#include "platform/posix/file_descriptor.h"

namespace player {

/// SIGINT and SIGTERM as events of the loop. Make it before any thread is started: those that come later must not be
/// ended by the signals either. SIGPIPE and SIGXFSZ, which would end the program for a reader that went away or a disk
/// that is full, are ignored.
class Signals {
public:
    /// The loop outlives this object. Failure: as EventLoop::Observe.
    Signals(platform::EventLoop& loop, std::function<void(int signal)> caught);
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;
    /// From here on the signals end the program again.
    ~Signals();

private:
    void Read();

    std::function<void(int signal)> caught_;
    platform::FileDescriptor descriptor_;
    std::unique_ptr<platform::Watch> readable_;
};

}  // namespace player
