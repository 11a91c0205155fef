#pragma once

#include <future>
#include <string>

#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// Takes the locks of files for one user of them. It waits 2 s at most for whoever holds a lock, and after a
/// wait in vain not at all until that lock has come free: a program that was stopped while it holds one costs
/// its neighbours one pause, not one for each record.
class LockWait {
public:
    /// Takes the exclusive lock of an open file; it ends with the descriptor. A file system without locks
    /// gives none. Failure: kPermissionDenied when another program keeps it.
    void Lock(const FileDescriptor& file, const std::string& path);

private:
    std::future<void> turn_;  // in the queue in which it waited last
};

}  // namespace platform::files
