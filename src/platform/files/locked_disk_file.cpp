#include "platform/files/locked_disk_file.h"

#include "platform/files/line_reader.h"
#include "platform/files/open_file.h"
#include "platform/files/replace_file.h"

namespace platform::files {

LockedDiskFile::LockedDiskFile(const std::string& path, LockWait& wait)
    : path_(path), file_(OpenAndLock(path, O_RDWR, wait))
{
    Replacement::RemoveLeftover(path);
}

std::int64_t LockedDiskFile::CountLines() const
{
    LineReader reader(file_, path_);
    std::int64_t count = 0;
    while (const auto piece = reader.Next())
        count += piece->endsLine ? 1 : 0;
    return count;
}

void LockedDiskFile::KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep)
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

}  // namespace platform::files
