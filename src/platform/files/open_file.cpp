#include "platform/files/open_file.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/failure.h"
#include "platform/posix/system_calls.h"

namespace platform::files {
namespace {

constexpr mode_t kReadableAndWritable = 0666;

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
    Meaning{EWOULDBLOCK, failure::kPermissionDenied, "Another program keeps the file locked"},
    Meaning{ENOSPC, failure::kDiskFull, "Disk full"},
    Meaning{EDQUOT, failure::kDiskFull, "Disk full"},
    Meaning{EFBIG, failure::kDiskFull, "Disk full"},
    Meaning{ENOMEM, failure::kOutOfMemory, "Out of memory"},
};

constexpr Meaning kAnyOther{0, failure::kPathFileAccess, "File access error"};

}  // namespace

void ThrowFailure(std::error_code error, const std::string& path)
{
    const auto* const found = std::ranges::find(kMeanings, error.value(), &Meaning::error);
    const Meaning& meaning = found == kMeanings.end() ? kAnyOther : *found;
    throw Failure(meaning.number, std::string(meaning.what) + ": " + path);
}

FileDescriptor Open(const std::string& path, int flags)
{
    FileDescriptor file(Uninterrupted([&] {
        return ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kReadableAndWritable);
    }));
    if (!file.IsOpen())
        ThrowFailure(LastError(), path);
    const bool isForReading = (flags & O_ACCMODE) != O_WRONLY;
    if (isForReading && !S_ISREG(StatusOf(file, path).st_mode))
        ThrowFailure(std::make_error_code(std::errc::invalid_argument), path);
    return file;
}

struct stat StatusOf(const FileDescriptor& file, const std::string& path)
{
    struct stat status {};
    if (::fstat(file.Number(), &status) != 0)
        ThrowFailure(LastError(), path);
    return status;
}

std::size_t ReadAt(const FileDescriptor& file, std::int64_t position, char* bytes, std::size_t size,
                   const std::string& path)
{
    std::error_code error;
    const std::size_t count = ReadFully(file, static_cast<std::uint64_t>(position), bytes, size, error);
    if (error)
        ThrowFailure(error, path);
    return count;
}

void WriteAt(const FileDescriptor& file, std::int64_t position, std::string_view bytes,
             const std::string& path)
{
    while (!bytes.empty()) {
        const ssize_t count =
            Uninterrupted([&] { return ::pwrite(file.Number(), bytes.data(), bytes.size(), position); });
        if (count < 0)
            ThrowFailure(LastError(), path);
        if (count == 0)
            ThrowFailure(std::make_error_code(std::errc::io_error), path);
        bytes.remove_prefix(static_cast<std::size_t>(count));
        position += count;
    }
}

}  // namespace platform::files
