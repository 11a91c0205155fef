#pragma once

#include <chrono>
#include <future>
#include <string>
#include <system_error>

#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// How long the program stands still for a lock at most.
inline constexpr std::chrono::milliseconds kLongestLockWait{200};

/// Takes the exclusive locks of files (flock), which keep out other programs of this kind, and waits a limited time for a
/// lock that one of them holds.
///
/// After a wait in vain, Lock fails without waiting until that lock has come free. So a program that was stopped while it
/// holds the log's lock delays its neighbours once, and not with each record.
///
/// A wait starts a thread, which ends when the lock comes free. It uses nothing but a descriptor of its own.
class LockWait {
public:
    explicit LockWait(std::chrono::milliseconds longest) : longest_(longest) {}

    /// Locks an open file until its descriptor is closed. Where the file system has no locks, the file stays unlocked
    /// and that is no failure. Failure: kPermissionDenied when another program keeps the lock; else as ThrowFailure.
    void Lock(const FileDescriptor& file, const std::string& path);

private:
    [[nodiscard]] std::error_code AwaitTurn(const FileDescriptor& file);

    std::chrono::milliseconds longest_;
    std::future<std::error_code> turn_;  // of the last wait, when it was in vain
};

/// Opens a file as Open does and locks it as LockWait does. When another program replaces or removes the file during the
/// wait, what stands at the path then is opened instead, so that nothing is written to a file that has lost its name.
[[nodiscard]] FileDescriptor OpenAndLock(const std::string& path, int flags, LockWait& wait);

}  // namespace platform::files
