#pragma once

#include <string>

namespace platform::files {

/// Throws what the system just reported in errno as a Failure that names the file: kPathNotFound,
/// kPermissionDenied, kDiskFull, kOutOfMemory, and kPathFileAccess for all else.
[[noreturn]] void ThrowErrno(const std::string& path);

/// The same for an error number at hand.
[[noreturn]] void ThrowError(int error, const std::string& path);

}  // namespace platform::files
