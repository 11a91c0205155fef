#include "platform/files/file_system.h"

#include <cerrno>

#include "platform/files/errno_failure.h"
#include "platform/files/locked_disk_file.h"
#include "platform/files/open_file.h"

namespace platform::files {
namespace {

/// A part of a record is worse than none: the next one would be glued to it.
void RemoveWritten(const FileDescriptor& file, ssize_t count, const std::string& path)
{
    const off_t begin = ::lseek(file.Number(), -count, SEEK_CUR);
    if (::ftruncate(file.Number(), begin) != 0)
        ThrowErrno(path);
}

}  // namespace

bool DiskFileSystem::FileExists(const std::string& path) const
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

void DiskFileSystem::Append(const std::string& path, const std::string& bytes)
{
    const FileDescriptor file = OpenAndLock(path, O_WRONLY | O_APPEND | O_CREAT, lockWait_);
    const ssize_t count = ::write(file.Number(), bytes.data(), bytes.size());
    if (count < 0)
        ThrowErrno(path);
    if (static_cast<std::size_t>(count) == bytes.size())
        return;
    if (count > 0)
        RemoveWritten(file, count, path);
    ThrowError(ENOSPC, path);
}

std::unique_ptr<LockedTextFile> DiskFileSystem::OpenLocked(const std::string& path)
{
    return std::make_unique<LockedDiskFile>(path, lockWait_);
}

}  // namespace platform::files
