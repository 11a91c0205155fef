#include "platform/jet/byte_source.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <ctime>

#include "platform/failure.h"
#include "platform/jet/byte_view.h"
#include "platform/posix/system_calls.h"

namespace platform::jet {
namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kFineStep = kNanosecondsPerSecond / 50;
constexpr std::int64_t kCoarseStep = 2 * kNanosecondsPerSecond;

std::int64_t Nanoseconds(const timespec& time)
{
    return time.tv_sec * kNanosecondsPerSecond + time.tv_nsec;
}

/// In English: std::strerror follows the operator's language, and its text may be no UTF-8.
std::string ReasonOf(int error)
{
    const char* const reason = ::strerrordesc_np(error);
    return reason == nullptr ? "system error " + std::to_string(error) : reason;
}

Failure CannotOpen(const std::string& path, int error)
{
    switch (error) {
        case ENOENT:
            return {failure::kDatabaseNotFound, "Could not find the database " + path};
        case ENOTDIR:
        case ENAMETOOLONG:
        case ELOOP:
            return {failure::kInvalidDatabasePath, "Not a valid path of a database: " + path};
        default:
            return {failure::kDatabaseCannotBeOpened,
                    "The database " + path + " cannot be opened: " + ReasonOf(error)};
    }
}

FileDescriptor OpenForReading(const std::string& path)
{
    if (path.empty() || path.find('\0') != std::string::npos)
        throw CannotOpen(path, ENOTDIR);
    // Without O_NONBLOCK a pipe of that name would keep the program waiting for a writer.
    FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.IsOpen())
        throw CannotOpen(path, errno);
    return file;
}

}  // namespace

FileSource::FileSource(const std::string& path) : file_(OpenForReading(path))
{
    struct stat status {};
    if (fstat(file_.Number(), &status) != 0 || !S_ISREG(status.st_mode))
        throw Failure(failure::kDatabaseCannotBeOpened, "The database " + path + " is no regular file");
}

std::size_t FileSource::Read(std::uint64_t offset, std::span<std::uint8_t> buffer) const
{
    std::error_code error;
    const std::size_t count = ReadFully(file_, offset, buffer.data(), buffer.size(), error);
    if (error)
        throw Damage("it cannot be read: " + ReasonOf(error.value()));
    return count;
}

std::uint64_t FileSource::Size() const
{
    return State().size;
}

FileState FileSource::State() const
{
    struct stat status {};
    if (fstat(file_.Number(), &status) != 0)
        return {};
    return {.device = status.st_dev,
            .number = status.st_ino,
            .size = static_cast<std::uint64_t>(status.st_size),
            .contentChanged = Nanoseconds(status.st_mtim),
            .statusChanged = Nanoseconds(status.st_ctim)};
}

bool FileState::ShowsChangesAfter(std::int64_t now) const
{
    const bool countsWholeSeconds = contentChanged % kNanosecondsPerSecond == 0;
    const std::int64_t age = now - contentChanged;
    return age < 0 || age > (countsWholeSeconds ? kCoarseStep : kFineStep);
}

}  // namespace platform::jet
