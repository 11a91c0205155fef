#include "platform/files/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <thread>
#include <utility>

#include "platform/files/open_file.h"
#include "platform/posix/system_calls.h"

namespace platform::files {
namespace {

/// A file can be replaced again and again while we wait for it: more than a hundred times in a row by a program that
/// trims without a pause. A file system that numbers its files anew at each look must not keep us here for ever.
constexpr int kMostOpenings = 10'000;

/// A wait that timed out leaves a thread in the queue. When the lock comes free that thread gets it first, and releases
/// it. It has this long.
constexpr std::chrono::milliseconds kMomentOfAnEarlierWait{1};

using Turn = std::future<std::error_code>;

std::error_code CallFlock(const FileDescriptor& file, int operation)
{
    const int result = Uninterrupted([&] { return ::flock(file.Number(), operation); });
    return result == 0 ? std::error_code() : LastError();
}

bool TellsOfNoLocks(std::error_code error)
{
    return error == std::errc::no_lock_available || error == std::errc::operation_not_supported;
}

/// Waits for the lock in the system's queue. (Tries in a row miss the moments at which a busy program leaves it free.) As
/// flock knows no time limit, a thread waits, which can be left behind. Both descriptors are of one opening of the file,
/// so the lock that the thread gets is the caller's as well.
Turn QueueForLock(const FileDescriptor& file)
{
    FileDescriptor same(::fcntl(file.Number(), F_DUPFD_CLOEXEC, 0));
    if (!same.IsOpen())
        throw std::system_error(LastError());
    std::promise<std::error_code> outcome;
    Turn turn = outcome.get_future();
    std::thread([same = std::move(same), outcome = std::move(outcome)]() mutable {
        outcome.set_value(CallFlock(same, LOCK_EX));
    }).detach();
    return turn;
}

bool HasCome(const Turn& turn, std::chrono::milliseconds wait)
{
    return turn.wait_for(wait) == std::future_status::ready;
}

bool StandsAt(const std::string& path, const FileDescriptor& file)
{
    struct stat named {};
    if (::stat(path.c_str(), &named) != 0) {
        const std::error_code error = LastError();
        if (error != std::errc::no_such_file_or_directory)
            ThrowFailure(error, path);
        return false;
    }
    const struct stat opened = StatusOf(file, path);
    return named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

}  // namespace

void LockWait::Lock(const FileDescriptor& file, const std::string& path)
{
    std::error_code error = CallFlock(file, LOCK_EX | LOCK_NB);
    if (error == std::errc::operation_would_block)
        error = AwaitTurn(file);
    if (error && !TellsOfNoLocks(error))
        ThrowFailure(error, path);
}

std::error_code LockWait::AwaitTurn(const FileDescriptor& file)
{
    const auto taken = std::make_error_code(std::errc::operation_would_block);
    if (turn_.valid() && !HasCome(turn_, kMomentOfAnEarlierWait))
        return taken;
    try {
        turn_ = QueueForLock(file);
    } catch (const std::system_error& refused) {
        return refused.code();
    }
    return HasCome(turn_, longest_) ? turn_.get() : taken;
}

FileDescriptor OpenAndLock(const std::string& path, int flags, LockWait& wait)
{
    FileDescriptor file;
    for (int i = 0; i < kMostOpenings; ++i) {
        file = Open(path, flags);
        wait.Lock(file, path);
        if (StandsAt(path, file))
            break;
    }
    return file;
}

}  // namespace platform::files
