#pragma once

#include <QTimer>
#include <functional>
#include <utility>

namespace platform::qt {

/// Runs an action soon after it was asked for, at most once a display frame, however often it is asked for.
class FramePacer {
public:
    explicit FramePacer(std::function<void()> action) : action_(std::move(action))
    {
        constexpr int kFrameMilliseconds = 16;
        timer_.setSingleShot(true);
        timer_.setInterval(kFrameMilliseconds);
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

}  // namespace platform::qt
