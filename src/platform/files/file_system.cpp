#include "platform/files/file_system.h"

#include "platform/files/line_reader.h"
#include "platform/files/open_file.h"
#include "platform/files/replace_file.h"
#include "platform/posix/system_calls.h"

namespace platform::files {
namespace {

class LockedDiskFile final : public LockedTextFile {
public:
    LockedDiskFile(const std::string& path, LockWait& wait)
        : path_(path), file_(OpenAndLock(path, O_RDWR, wait))
    {
        Replacement::RemoveLeftover(path);
    }

    [[nodiscard]] std::int64_t CountLines() const override
    {
        LineReader reader(file_, path_);
        std::int64_t count = 0;
        while (const auto piece = reader.Next())
            count += piece->endsLine ? 1 : 0;
        return count;
    }

    void KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep) override
    {
        LineReader reader(file_, path_);
        Replacement replacement(path_, file_);
        std::int64_t number = 0;
        bool beginsLine = true;
        bool kept = false;
        while (const auto piece = reader.Next()) {
            if (beginsLine)
                kept = keep(++number, piece->text);
            beginsLine = piece->endsLine;
            if (!kept)
                continue;
            replacement.Write(piece->text);
            if (piece->endsLine)
                replacement.Write("\r\n");
        }
        replacement.Commit();
    }

private:
    std::string path_;
    FileDescriptor file_;
};

/// A part of a record is worse than none: the next record would be glued to it.
void RemoveLastBytes(const FileDescriptor& file, ssize_t count, const std::string& path)
{
    const off_t begin = ::lseek(file.Number(), -count, SEEK_CUR);
    if (begin < 0 || ::ftruncate(file.Number(), begin) != 0)
        ThrowFailure(LastError(), path);
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
    const ssize_t count = Uninterrupted([&] { return ::write(file.Number(), bytes.data(), bytes.size()); });
    if (count < 0)
        ThrowFailure(LastError(), path);
    if (static_cast<std::size_t>(count) == bytes.size())
        return;
    if (count > 0)
        RemoveLastBytes(file, count, path);
    ThrowFailure(std::make_error_code(std::errc::no_space_on_device), path);
}

std::unique_ptr<LockedTextFile> DiskFileSystem::OpenLocked(const std::string& path)
{
    return std::make_unique<LockedDiskFile>(path, lockWait_);
}

}  // namespace platform::files
