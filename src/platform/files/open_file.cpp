#include "platform/files/open_file.h"

#include <array>
#include <cerrno>

#include "platform/files/errno_failure.h"
#include "platform/posix/read_fully.h"

namespace platform::files {
namespace {

constexpr mode_t kReadableAndWritable = 0666;
constexpr std::size_t kPiece = std::size_t{64} * 1024;

/// More than any race with other programs takes (against one that trims without a pause, a hundred and more);
/// a file system that numbers its files anew at every look must not keep us here for ever.
constexpr int kMostOpenings = 10'000;

bool StandsAt(const std::string& path, const FileDescriptor& file)
{
    struct stat named {};
    if (::stat(path.c_str(), &named) != 0)
        return false;
    const struct stat opened = StatusOf(file, path);
    return named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

}  // namespace

FileDescriptor Open(const std::string& path, int flags)
{
    FileDescriptor file(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, kReadableAndWritable));
    if (!file.IsOpen())
        ThrowErrno(path);
    const bool forReading = (flags & O_ACCMODE) == O_RDONLY;  // the system opens no folder for writing
    if (forReading && S_ISDIR(StatusOf(file, path).st_mode))
        ThrowError(EISDIR, path);
    return file;
}

FileDescriptor OpenAndLock(const std::string& path, int flags, LockWait& wait)
{
    FileDescriptor file;
    for (int i = 0; i < kMostOpenings; ++i) {
        file = Open(path, flags);
        wait.Lock(file, path);
        if (StandsAt(path, file))
            break;
    }
    return file;
}

struct stat StatusOf(const FileDescriptor& file, const std::string& path)
{
    struct stat status {};
    if (::fstat(file.Number(), &status) != 0)
        ThrowErrno(path);
    return status;
}

std::size_t ReadAt(const FileDescriptor& file, std::int64_t position, char* bytes, std::size_t size,
                   const std::string& path)
{
    const auto count = ReadFully(file, static_cast<std::uint64_t>(position), bytes, size);
    if (!count)
        ThrowErrno(path);
    return *count;
}

std::string ReadAll(const FileDescriptor& file, const std::string& path)
{
    std::string content;
    std::array<char, kPiece> piece;
    std::size_t count = 0;
    do {
        count = ReadAt(file, static_cast<std::int64_t>(content.size()), piece.data(), piece.size(), path);
        content.append(piece.data(), count);
    } while (count == piece.size());
    return content;
}

void WriteAt(const FileDescriptor& file, std::int64_t position, std::string_view bytes,
             const std::string& path)
{
    while (!bytes.empty()) {
        const ssize_t count = ::pwrite(file.Number(), bytes.data(), bytes.size(), position);
        if (count < 0 && errno != EINTR)
            ThrowErrno(path);
        if (count > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
            position += count;
        }
    }
}

}  // namespace platform::files
