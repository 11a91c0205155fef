#pragma once

#include <QTimer>
#include <chrono>
#include <functional>
#include <utility>

namespace platform::window {

/// Runs an action soon after it was asked for, at most once a display frame, however often it is asked for.
class FramePacer {
public:
    static constexpr std::chrono::milliseconds kFrame{16};

    /// The pause is how long requests are gathered before the action runs: a frame or longer.
    explicit FramePacer(std::function<void()> action, std::chrono::milliseconds pause = kFrame)
        : action_(std::move(action))
    {
        timer_.setSingleShot(true);
        timer_.setInterval(pause);
        QObject::connect(&timer_, &QTimer::timeout, action_);
    }

    void Request()
    {
        if (!timer_.isActive())
            timer_.start();
    }

    /// Runs the action now; what was asked for is done with.
    void RunNow()
    {
        timer_.stop();
        action_();
    }

private:
    std::function<void()> action_;
    QTimer timer_;
};

}  // namespace platform::window
