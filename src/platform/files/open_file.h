#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/files/lock_wait.h"
#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// Small steps on files, each a Failure naming the path where the system refuses it.

/// Opens a file with the flags of open(2). A folder, and a pipe that nobody reads, is a Failure: opening
/// never waits.
[[nodiscard]] FileDescriptor Open(const std::string& path, int flags);

/// Opens a file and takes its exclusive lock, waiting as LockWait does. When the file was replaced or removed
/// meanwhile, the one that stands there now is opened instead, so that nothing is written to a file that no
/// longer has a name. The lock ends with the descriptor.
[[nodiscard]] FileDescriptor OpenAndLock(const std::string& path, int flags, LockWait& wait);

[[nodiscard]] struct stat StatusOf(const FileDescriptor& file, const std::string& path);

/// Reads up to `size` bytes from a position on; fewer only at the end of the file.
[[nodiscard]] std::size_t ReadAt(const FileDescriptor& file, std::int64_t position, char* bytes,
                                 std::size_t size, const std::string& path);

/// The whole content.
[[nodiscard]] std::string ReadAll(const FileDescriptor& file, const std::string& path);

/// Writes all bytes from a position on.
void WriteAt(const FileDescriptor& file, std::int64_t position, std::string_view bytes,
             const std::string& path);

}  // namespace platform::files
