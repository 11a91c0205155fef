#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/event_loop.h"

namespace record {

/// Brings what was written to a file onto the disk, once a second while something is written. A thread of its
/// own waits for the disk, so that nothing else does.
class BackgroundSync {
public:
    /// The loop and the open file are borrowed and outlive it.
    BackgroundSync(platform::EventLoop& loop, int descriptor);
    ~BackgroundSync();
    BackgroundSync(const BackgroundSync&) = delete;
    BackgroundSync& operator=(const BackgroundSync&) = delete;

    /// Something was written: it is on the disk about a second from now. The failure of an earlier time is a
    /// Failure of the event loop's pass that finds it.
    void Written();

    /// Nothing more will be written. Waits for what is under way. The system tells a failure once, so this is the last
    /// moment to learn of one: it is a Failure.
    void Finish();

private:
    void SecondHasPassed();
    void ThrowIfFailed() const;
    void Run(const std::stop_token& stop);

    int descriptor_;
    std::unique_ptr<platform::Alarm> second_;
    bool isSet_ = false;
    std::mutex mutex_;  // of the two below
    bool isWanted_ = false;
    int error_ = 0;  // of the first that failed
    std::condition_variable_any wanted_;
    std::jthread thread_;
};

}  // namespace record
