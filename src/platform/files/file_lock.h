#pragma once

#include <chrono>
#include <future>
#include <string>
#include <system_error>

#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// How long the program stands still for a lock at most.
inline constexpr std::chrono::milliseconds kLongestLockWait{200};

/// Takes the exclusive locks of files (flock) against other programs of this kind, and waits a limited time for one
/// that is taken.
///
/// Whoever has waited in vain does not wait again until that lock has been free: a program that was stopped while it
/// holds the log's lock delays its neighbours once, not with each record.
///
/// A wait starts a thread. It ends when the lock comes free, however late, and touches nothing but a descriptor of its
/// own.
class LockWait {
public:
    explicit LockWait(std::chrono::milliseconds longest) : longest_(longest) {}

    /// Locks an open file. The lock ends with the descriptor. A file is let pass without a lock only where its file
    /// system has none. Failure: kPermissionDenied when another program keeps the lock; else as ThrowFailure.
    void Lock(const FileDescriptor& file, const std::string& path);

private:
    [[nodiscard]] std::error_code AwaitTurn(const FileDescriptor& file);

    std::chrono::milliseconds longest_;
    std::future<std::error_code> turn_;  // of the last wait, when it was in vain
};

/// Opens a file as Open does and locks it. When another program has replaced or removed the file before the lock was
/// ours, what stands there now is opened instead, so that nothing is written to a file that has lost its name. The lock
/// ends with the descriptor.
[[nodiscard]] FileDescriptor OpenAndLock(const std::string& path, int flags, LockWait& wait);

}  // namespace platform::files
