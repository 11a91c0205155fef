#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/event_loop.h"
#include "platform/posix/file_descriptor.h"

namespace platform::posix {

/// The event loop over epoll. The moments of all alarms stand in one ordered list over a single timerfd.
class EpollLoop final : public EventLoop {
public:
    /// Failure: kOutOfMemory where the system gives no descriptors.
    EpollLoop();
    ~EpollLoop() override;
    EpollLoop(const EpollLoop&) = delete;
    EpollLoop& operator=(const EpollLoop&) = delete;

    [[nodiscard]] std::unique_ptr<Watch> Observe(int descriptor, Readiness readiness,
                                                 std::function<void()> react) override;
    [[nodiscard]] std::unique_ptr<Alarm> NewAlarm(std::function<void()> react) override;
    void Post(std::function<void()> action) override;
    void RunPass(Waiting waiting) override;
    [[nodiscard]] int Descriptor() override;

private:
    /// Shared, so that a reaction may destroy the watch or alarm to which it belongs.
    using Reaction = std::shared_ptr<const std::function<void()>>;

    class DescriptorWatch;
    class MomentAlarm;
    using Moments = std::multimap<Alarm::Time, MomentAlarm*>;

    /// The watches of one descriptor.
    struct Watched {
        Reaction readable;
        Reaction writable;
        std::uint32_t registered = 0;  // the events for which epoll knows it
        std::uint32_t generation = 0;  // grows when the number may stand for another file than before
        [[nodiscard]] std::uint32_t Wanted() const;
    };

    [[nodiscard]] bool Register(int descriptor);
    [[nodiscard]] Watched& WatchedOf(int descriptor);
    [[nodiscard]] std::optional<Alarm::Time> NextMoment() const;
    [[nodiscard]] bool SomethingIsDue() const;
    void RunMoments();
    void RunPosted();
    void React(std::uint64_t key, std::uint32_t events);
    void AnnounceNextPass();
    [[nodiscard]] bool SetTimer(std::optional<Alarm::Time> moment);
    void SetWake(bool on);
    void RestUnless(bool wasDone);

    FileDescriptor epoll_;
    FileDescriptor timer_;
    FileDescriptor wake_;
    std::vector<Watched> watched_;  // by descriptor
    Moments moments_;
    std::deque<MomentAlarm*> due_;  // come, but not run yet
    std::deque<std::function<void()>> posted_;
    std::optional<Alarm::Time> timerSetTo_;
    bool wasRefused_ = false;  // a call, since the last pass, without which the loop would spin
    bool wakeIsOn_ = false;
    bool isWatchedItself_ = false;  // another event loop relies on Descriptor()
};

}  // namespace platform::posix
