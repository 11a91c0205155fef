#include "platform/posix/epoll_loop.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <thread>
#include <utility>

#include "platform/failure.h"
#include "platform/posix/system_calls.h"

namespace platform::posix {
namespace {

constexpr int kMostEventsAPass = 64;

/// Before a call that the system has refused is made again, which would keep a core busy.
constexpr std::chrono::milliseconds kRest{10};

FileDescriptor Checked(int descriptor)
{
    if (descriptor < 0)
        throw Failure(failure::kOutOfMemory, "The system gives no event loop");
    return FileDescriptor(descriptor);
}

/// What an event tells of its descriptor.
std::uint64_t KeyOf(int descriptor, std::uint32_t generation)
{
    return std::uint64_t{generation} << 32 | static_cast<std::uint32_t>(descriptor);
}

void Add(const FileDescriptor& epoll, const FileDescriptor& descriptor)
{
    epoll_event event{.events = EPOLLIN, .data = {.u64 = KeyOf(descriptor.Number(), 0)}};
    if (epoll_ctl(epoll.Number(), EPOLL_CTL_ADD, descriptor.Number(), &event) != 0)
        throw Failure(failure::kOutOfMemory, "The system gives no event loop");
}

itimerspec Once(std::optional<Alarm::Time> moment)
{
    itimerspec once{};
    if (!moment)
        return once;
    // The steady clock counts as CLOCK_MONOTONIC does.
    const auto sinceZero = moment->time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceZero);
    once.it_value.tv_sec = seconds.count();
    once.it_value.tv_nsec = std::chrono::nanoseconds(sinceZero - seconds).count();
    return once;
}

}  // namespace

/// Stands in moments_ while it is set, and in due_ from the pass that finds its moment come until it has run.
class EpollLoop::MomentAlarm final : public Alarm {
public:
    MomentAlarm(EpollLoop& loop, std::function<void()> react)
        : loop_(loop), react_(std::make_shared<const std::function<void()>>(std::move(react)))
    {}
    MomentAlarm(const MomentAlarm&) = delete;
    MomentAlarm& operator=(const MomentAlarm&) = delete;
    ~MomentAlarm() override { Remove(); }

    void Set(Time moment) override
    {
        Remove();
        if (node_.empty()) {
            place_ = loop_.moments_.emplace(moment, this);
        } else {
            node_.key() = moment;
            place_ = loop_.moments_.insert(std::move(node_));
        }
        state_ = State::kSet;
        loop_.AnnounceNextPass();
    }

    void Clear() override
    {
        Remove();
        loop_.AnnounceNextPass();
    }

    void MoveToDue()
    {
        node_ = loop_.moments_.extract(place_);
        loop_.due_.push_back(this);
        state_ = State::kDue;
    }

    [[nodiscard]] Reaction TakeReaction()
    {
        state_ = State::kUnset;
        return react_;
    }

private:
    enum class State { kUnset, kSet, kDue };

    void Remove()
    {
        if (state_ == State::kSet)
            node_ = loop_.moments_.extract(place_);
        else if (state_ == State::kDue)
            std::erase(loop_.due_, this);
        state_ = State::kUnset;
    }

    EpollLoop& loop_;
    Reaction react_;
    State state_ = State::kUnset;
    Moments::iterator place_;
    Moments::node_type node_;  // kept, so that setting anew takes no memory
};

class EpollLoop::DescriptorWatch final : public Watch {
public:
    DescriptorWatch(EpollLoop& loop, int descriptor, Readiness readiness, std::function<void()> react)
        : loop_(loop),
          descriptor_(descriptor),
          readiness_(readiness),
          react_(std::make_shared<const std::function<void()>>(std::move(react)))
    {
        SetEnabled(true);
    }
    DescriptorWatch(const DescriptorWatch&) = delete;
    DescriptorWatch& operator=(const DescriptorWatch&) = delete;
    ~DescriptorWatch() override { SetEnabled(false); }

    void SetEnabled(bool enabled) override
    {
        Watched& watched = loop_.WatchedOf(descriptor_);
        Reaction& slot = readiness_ == Readiness::kReadable ? watched.readable : watched.writable;
        if (enabled == (slot != nullptr))
            return;
        slot = enabled ? react_ : nullptr;
        if (loop_.Register(descriptor_) || !enabled)
            return;
        slot = nullptr;
        throw Failure(failure::kOutOfMemory, "The system cannot watch one more descriptor");
    }

private:
    EpollLoop& loop_;
    int descriptor_;
    Readiness readiness_;
    Reaction react_;
};

EpollLoop::EpollLoop()
    : epoll_(Checked(epoll_create1(EPOLL_CLOEXEC))),
      timer_(Checked(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC))),
      wake_(Checked(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)))
{
    Add(epoll_, timer_);
    Add(epoll_, wake_);
}

EpollLoop::~EpollLoop() = default;

std::unique_ptr<Watch> EpollLoop::Observe(int descriptor, Readiness readiness, std::function<void()> react)
{
    return std::make_unique<DescriptorWatch>(*this, descriptor, readiness, std::move(react));
}

std::unique_ptr<Alarm> EpollLoop::NewAlarm(std::function<void()> react)
{
    return std::make_unique<MomentAlarm>(*this, std::move(react));
}

void EpollLoop::Post(std::function<void()> action)
{
    posted_.push_back(std::move(action));
    AnnounceNextPass();
}

void EpollLoop::RunPass(Waiting waiting)
{
    const bool waits = waiting == Waiting::kYes && !SomethingIsDue() && SetTimer(NextMoment());
    std::array<epoll_event, kMostEventsAPass> ready;
    const int count = Uninterrupted(
        [&] { return epoll_wait(epoll_.Number(), ready.data(), kMostEventsAPass, waits ? -1 : 0); });
    if (std::exchange(wasRefused_, false) || count < 0)
        std::this_thread::sleep_for(kRest);
    RunMoments();
    RunPosted();
    for (int i = 0; i < count; ++i) {
        const epoll_event& event = ready[static_cast<std::size_t>(i)];
        React(event.data.u64, event.events);
    }
    AnnounceNextPass();
}

int EpollLoop::Descriptor()
{
    isWatchedItself_ = true;
    AnnounceNextPass();
    return epoll_.Number();
}

EpollLoop::Watched& EpollLoop::WatchedOf(int descriptor)
{
    const auto index = static_cast<std::size_t>(descriptor);
    if (index >= watched_.size())
        watched_.resize(index + 1);
    return watched_[index];
}

/// Tells epoll what is wanted of a descriptor now. One of which nothing is wanted is taken out, because epoll would
/// report its errors all the same.
bool EpollLoop::Register(int descriptor)
{
    Watched& watched = WatchedOf(descriptor);
    const std::uint32_t wanted = watched.Wanted();
    const int change = wanted == 0 ? EPOLL_CTL_DEL : watched.registered == 0 ? EPOLL_CTL_ADD : EPOLL_CTL_MOD;
    if (change == EPOLL_CTL_ADD)
        ++watched.generation;
    epoll_event event{.events = wanted, .data = {.u64 = KeyOf(descriptor, watched.generation)}};
    if (epoll_ctl(epoll_.Number(), change, descriptor, &event) == 0) {
        watched.registered = wanted;
        return true;
    }
    // The number may stand for another file than the one that epoll knew.
    const bool isUnknown = errno == ENOENT || errno == EBADF;
    if (isUnknown)
        watched.registered = 0;
    return isUnknown && (wanted == 0 || (change == EPOLL_CTL_MOD && Register(descriptor)));
}

std::uint32_t EpollLoop::Watched::Wanted() const
{
    return (readable ? EPOLLIN : 0U) | (writable ? EPOLLOUT : 0U);
}

std::optional<Alarm::Time> EpollLoop::NextMoment() const
{
    return moments_.empty() ? std::nullopt : std::optional(moments_.begin()->first);
}

bool EpollLoop::SomethingIsDue() const
{
    return !posted_.empty() || !due_.empty() ||
           (!moments_.empty() && moments_.begin()->first <= std::chrono::steady_clock::now());
}

void EpollLoop::RunMoments()
{
    const auto now = std::chrono::steady_clock::now();
    while (!moments_.empty() && moments_.begin()->first <= now)
        moments_.begin()->second->MoveToDue();
    for (std::size_t left = due_.size(); left > 0 && !due_.empty(); --left) {
        MomentAlarm& alarm = *due_.front();
        due_.pop_front();
        const Reaction react = alarm.TakeReaction();
        (*react)();
    }
}

void EpollLoop::RunPosted()
{
    for (std::size_t left = posted_.size(); left > 0 && !posted_.empty(); --left) {
        const auto action = std::move(posted_.front());
        posted_.pop_front();
        action();
    }
}

/// An error or a hang-up counts as ready for both: the call that then fails says what it is. A reaction may close the
/// descriptor and open another one, which gets the lowest free number and so the same: that one knows nothing of this
/// event.
void EpollLoop::React(std::uint64_t key, std::uint32_t events)
{
    constexpr std::uint32_t kBroken = EPOLLERR | EPOLLHUP;
    const auto descriptor = static_cast<int>(key & UINT32_MAX);
    const auto reactIf = [&](Reaction Watched::*reaction, std::uint32_t wanted) {
        const Watched& watched = WatchedOf(descriptor);
        if (KeyOf(descriptor, watched.generation) != key || (events & (wanted | kBroken)) == 0)
            return;
        if (const Reaction react = watched.*reaction)
            (*react)();
    };
    // Where a change was refused, the descriptor may be ready for what nobody wants any more, and stay so.
    if (const Watched& watched = WatchedOf(descriptor); watched.registered != watched.Wanted())
        RestUnless(Register(descriptor));
    reactIf(&Watched::readable, EPOLLIN);
    reactIf(&Watched::writable, EPOLLOUT);
}

/// Makes Descriptor() tell of the next pass. Arming the timer for a moment that has passed costs about 30 microseconds
/// of system time, so what is due already is told by the other descriptor.
void EpollLoop::AnnounceNextPass()
{
    if (!isWatchedItself_)
        return;
    SetWake(SomethingIsDue() || !SetTimer(NextMoment()));
}

bool EpollLoop::SetTimer(std::optional<Alarm::Time> moment)
{
    if (moment == timerSetTo_)
        return true;
    const itimerspec once = Once(moment);
    const bool isSet = timerfd_settime(timer_.Number(), TFD_TIMER_ABSTIME, &once, nullptr) == 0;
    RestUnless(isSet);
    if (isSet)
        timerSetTo_ = moment;
    return isSet;
}

void EpollLoop::SetWake(bool on)
{
    if (on == wakeIsOn_)
        return;
    eventfd_t value = 1;
    const bool isDone =
        (on ? eventfd_write(wake_.Number(), value) : eventfd_read(wake_.Number(), &value)) == 0;
    RestUnless(isDone);
    if (isDone)
        wakeIsOn_ = on;
}

/// A call that the system refuses is not made again without a rest.
void EpollLoop::RestUnless(bool wasDone)
{
    if (!wasDone)
        wasRefused_ = true;
}

}  // namespace platform::posix
