#include "platform/files/replace_file.h"

#include <sys/mman.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <utility>

#include "platform/files/file_lock.h"
#include "platform/files/open_file.h"
#include "platform/posix/system_calls.h"

namespace platform::files {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;
constexpr mode_t kOwnerOnly = 0600;
constexpr mode_t kPermissionBits = 07777;

std::string WithoutSymbolicLinks(const std::string& path)
{
    std::array<char, PATH_MAX> resolved;
    if (::realpath(path.c_str(), resolved.data()) == nullptr)
        ThrowFailure(LastError(), path);
    return resolved.data();
}

std::string TemporaryName(const std::string& target)
{
    const std::size_t name = target.rfind('/') + 1;
    return target.substr(0, name) + '.' + target.substr(name) + ".new";
}

/// A full disk ends the replacement. When a new file cannot be made for another reason, the old one is written over.
void ThrowIfDiskFull(std::error_code error, const std::string& path)
{
    if (error.value() == ENOSPC || error.value() == EDQUOT)
        ThrowFailure(error, path);
}

/// Gives a file the owner and group of another, or the group alone where the system does not let us give files away.
/// False when it cannot have the same permissions.
bool CopyOwnerAndPermissions(const FileDescriptor& from, const FileDescriptor& to, const std::string& path)
{
    constexpr auto kSameOwner = static_cast<uid_t>(-1);
    const struct stat status = StatusOf(from, path);
    for (const uid_t owner : {status.st_uid, kSameOwner})
        if (::fchown(to.Number(), owner, status.st_gid) == 0)
            break;
    return ::fchmod(to.Number(), status.st_mode & kPermissionBits) == 0;
}

/// Makes sure that a file can grow to a size, without changing it when it cannot.
void ReserveRoom(const FileDescriptor& file, std::int64_t size, const std::string& path)
{
    const off_t oldSize = StatusOf(file, path).st_size;
    if (size <= oldSize)
        return;
    const int error = ::posix_fallocate(file.Number(), oldSize, size - oldSize);
    if (error == 0)
        return;
    if (::ftruncate(file.Number(), oldSize) != 0)
        ThrowFailure(LastError(), path);
    ThrowFailure({error, std::generic_category()}, path);
}

}  // namespace

Replacement::Replacement(const std::string& path, FileDescriptor& file)
    : target_(WithoutSymbolicLinks(path)), temporary_(TemporaryName(target_)), file_(file)
{
    OpenNewFile();
}

void Replacement::RemoveLeftover(const std::string& path)
{
    ::unlink(TemporaryName(WithoutSymbolicLinks(path)).c_str());
}

Replacement::~Replacement()
{
    if (named_)
        ::unlink(temporary_.c_str());
}

void Replacement::Write(std::string_view bytes)
{
    buffer_ += bytes;
    if (buffer_.size() >= kPiece)
        Flush();
}

void Replacement::Commit()
{
    Flush();
    if (!MoveOverFile())
        CopyOverFile();
}

void Replacement::OpenNewFile()
{
    const std::string folder = target_.substr(0, target_.rfind('/') + 1);
    newFile_ = FileDescriptor(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kOwnerOnly));
    if (newFile_.IsOpen())
        return;
    ThrowIfDiskFull(LastError(), target_);
    newFile_ = FileDescriptor(
        ::open(temporary_.c_str(), O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_CLOEXEC, kOwnerOnly));
    named_ = newFile_.IsOpen();
    if (named_)
        return;
    ThrowIfDiskFull(LastError(), target_);
    beside_ = false;
    newFile_ = FileDescriptor(::memfd_create("new content", MFD_CLOEXEC));
    if (!newFile_.IsOpen())
        ThrowFailure(LastError(), target_);
}

void Replacement::Flush()
{
    WriteAt(newFile_, written_, buffer_, target_);
    written_ += static_cast<std::int64_t>(buffer_.size());
    buffer_.clear();
}

/// False when the new file cannot take the place of the old one.
bool Replacement::MoveOverFile()
{
    if (!beside_ || !CopyOwnerAndPermissions(file_, newFile_, target_))
        return false;
    if (::fsync(newFile_.Number()) != 0)
        ThrowFailure(LastError(), target_);
    LockWait(kLongestLockWait).Lock(newFile_, target_);
    if (!named_) {
        const std::string open = "/proc/self/fd/" + std::to_string(newFile_.Number());
        named_ = ::linkat(AT_FDCWD, open.c_str(), AT_FDCWD, temporary_.c_str(), AT_SYMLINK_FOLLOW) == 0;
    }
    if (!named_ || ::rename(temporary_.c_str(), target_.c_str()) != 0) {
        ThrowIfDiskFull(LastError(), target_);
        return false;
    }
    named_ = false;
    file_ = std::move(newFile_);
    return true;
}

void Replacement::CopyOverFile()
{
    ReserveRoom(file_, written_, target_);
    std::string piece(kPiece, '\0');
    for (std::int64_t position = 0; position < written_;) {
        const std::size_t count = ReadAt(newFile_, position, piece.data(), piece.size(), target_);
        if (count == 0)
            ThrowFailure(std::make_error_code(std::errc::io_error), target_);
        WriteAt(file_, position, std::string_view(piece).substr(0, count), target_);
        position += static_cast<std::int64_t>(count);
    }
    if (::ftruncate(file_.Number(), written_) != 0 || ::fsync(file_.Number()) != 0)
        ThrowFailure(LastError(), target_);
}

}  // namespace platform::files
