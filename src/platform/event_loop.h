#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace platform {

enum class Readiness { kReadable, kWritable };

/// Whether a pass waits for something to happen when nothing has happened yet.
enum class Waiting { kNo, kYes };

/// A descriptor that the loop watches until this object is destroyed. Destroy it before the descriptor is closed.
class Watch {
public:
    virtual ~Watch() = default;

    /// A watch begins enabled. A disabled one does not react, and its descriptor does not end a
    /// pass that waits.
    virtual void SetEnabled(bool enabled) = 0;
};

/// One moment at which something is to run. It begins unset.
class Alarm {
public:
    using Time = std::chrono::steady_clock::time_point;

    virtual ~Alarm() = default;

    /// Replaces the moment that was set before. One that has passed comes in the next pass.
    virtual void Set(Time moment) = 0;
    virtual void Clear() = 0;
};

/// What happens in one thread: descriptors that become ready, moments that come, actions that were posted.
///
/// Reactions: run one after the other inside RunPass. A reaction may do anything here: run a pass of its own, make
///            and destroy watches and alarms, its own included. It may come when the descriptor is not ready any
///            more, so descriptors are non-blocking.
/// Failure:   kOutOfMemory where the system refuses to watch; what was watched stays so.
/// Ownership: the loop outlives its watches and alarms and closes no descriptor that is not its own.
class EventLoop {
public:
    virtual ~EventLoop() = default;

    /// Reacts in each pass in which the descriptor is ready. At most one watch for each kind of readiness of a
    /// descriptor. A regular file cannot be watched (kOutOfMemory): it is always ready.
    [[nodiscard]] virtual std::unique_ptr<Watch> Observe(int descriptor, Readiness readiness,
                                                         std::function<void()> react) = 0;

    [[nodiscard]] virtual std::unique_ptr<Alarm> NewAlarm(std::function<void()> react) = 0;

    /// Runs the action in the next pass. What a moment of a pass posts runs in that pass still, behind the moments.
    virtual void Post(std::function<void()> action) = 0;

    /// Runs what is due: first the moments that have come, earliest first, then posted actions, then ready
    /// descriptors, each at most once. With Waiting::kYes it first waits until something is due.
    virtual void RunPass(Waiting waiting) = 0;

    /// A descriptor that is readable, from this call on, while a pass is due. Another event loop may poll it, and must
    /// not read it.
    [[nodiscard]] virtual int Descriptor() = 0;
};

}  // namespace platform
