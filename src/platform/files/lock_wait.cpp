#include "platform/files/lock_wait.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "platform/files/errno_failure.h"

namespace platform::files {
namespace {

/// Longer than any program of this kind holds the lock of one file, unless it was stopped.
constexpr std::chrono::seconds kLongestWait{2};

/// Queues for the lock where the system does, so that every program gets its turn, on a thread that can be left
/// behind: the lock belongs to the open file, whose last descriptor gives it up.
std::future<void> QueueForLock(const FileDescriptor& file)
{
    FileDescriptor same(::fcntl(file.Number(), F_DUPFD_CLOEXEC, 0));
    std::promise<void> locked;
    std::future<void> turn = locked.get_future();
    std::thread([same = std::move(same), locked = std::move(locked)]() mutable {
        while (::flock(same.Number(), LOCK_EX) != 0 && errno == EINTR) {
        }
        locked.set_value();
    }).detach();
    return turn;
}

bool HasCome(const std::future<void>& turn, std::chrono::seconds wait)
{
    return turn.wait_for(wait) == std::future_status::ready;
}

}  // namespace

void LockWait::Lock(const FileDescriptor& file, const std::string& path)
{
    const bool isTaken = ::flock(file.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (!isTaken)
        return;
    if (turn_.valid() && !HasCome(turn_, std::chrono::seconds::zero()))
        ThrowError(EACCES, path);
    turn_ = QueueForLock(file);
    if (!HasCome(turn_, kLongestWait))
        ThrowError(EACCES, path);
}

}  // namespace platform::files
