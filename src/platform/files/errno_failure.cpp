#include "platform/files/errno_failure.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/failure.h"
#include "platform/failure_numbers.h"

namespace platform::files {
namespace {

struct Meaning {
    int error;
    int number;
    const char* what;
};

constexpr std::array kMeanings = {
    Meaning{ENOENT, failure::kPathNotFound, "Path not found"},
    Meaning{ENOTDIR, failure::kPathNotFound, "Path not found"},
    Meaning{ELOOP, failure::kPathNotFound, "Path not found"},
    Meaning{ENAMETOOLONG, failure::kPathNotFound, "Path not found"},
    Meaning{EACCES, failure::kPermissionDenied, "Permission denied"},
    Meaning{EPERM, failure::kPermissionDenied, "Permission denied"},
    Meaning{EROFS, failure::kPermissionDenied, "Permission denied"},
    Meaning{ENOSPC, failure::kDiskFull, "Disk full"},
    Meaning{EDQUOT, failure::kDiskFull, "Disk full"},
    Meaning{EFBIG, failure::kDiskFull, "Disk full"},
    Meaning{ENOMEM, failure::kOutOfMemory, "Out of memory"},
};

constexpr Meaning kAnyOther{0, failure::kPathFileAccess, "File access error"};

}  // namespace

void ThrowErrno(const std::string& path)
{
    ThrowError(errno, path);
}

void ThrowError(int error, const std::string& path)
{
    const auto* const found = std::ranges::find(kMeanings, error, &Meaning::error);
    const Meaning& meaning = found == kMeanings.end() ? kAnyOther : *found;
    throw Failure(meaning.number, std::string(meaning.what) + ": " + path);
}

}  // namespace platform::files
