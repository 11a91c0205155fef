#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/posix/file_descriptor.h"

/// Opening, reading and writing files, and what goes wrong there. Errors of the system travel as std::error_code up to
/// ThrowFailure, which knows the number and the sentence of each. Every function here throws that way, and the path is
/// the one that the sentence names.
namespace platform::files {

/// Throws a Failure for an error of the system: kPathNotFound, kPermissionDenied, kDiskFull, kOutOfMemory, and
/// kPathFileAccess for all else.
[[noreturn]] void ThrowFailure(std::error_code error, const std::string& path);

/// Opens a file with the flags of open(2). One that O_CREAT makes has the permissions 0666 less the umask. What is opened
/// for reading must be a regular file: a folder, a pipe or a device, which may have no end, is a Failure. Opening never
/// waits, not even for the other side of a pipe.
[[nodiscard]] FileDescriptor Open(const std::string& path, int flags);

[[nodiscard]] struct stat StatusOf(const FileDescriptor& file, const std::string& path);

/// Reads up to `size` bytes from a position on; fewer only at the end of the file.
[[nodiscard]] std::size_t ReadAt(const FileDescriptor& file, std::int64_t position, char* bytes,
                                 std::size_t size, const std::string& path);

/// Writes all bytes from a position on.
void WriteAt(const FileDescriptor& file, std::int64_t position, std::string_view bytes,
             const std::string& path);

}  // namespace platform::files
