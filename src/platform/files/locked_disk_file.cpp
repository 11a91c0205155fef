#include "platform/files/locked_disk_file.h"

#include "platform/files/line_reader.h"
#include "platform/files/open_file.h"
#include "platform/files/replace_file.h"

namespace platform::files {

LockedDiskFile::LockedDiskFile(const std::string& path) : path_(path), file_(OpenAndLock(path, O_RDWR)) {}

std::int64_t LockedDiskFile::CountLines() const
{
    LineReader reader(file_, path_);
    std::int64_t count = 0;
    while (reader.Next())
        ++count;
    return count;
}

void LockedDiskFile::KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep)
{
    LineReader reader(file_, path_);
    Replacement replacement(path_, file_);
    std::int64_t number = 0;
    while (const auto line = reader.Next()) {
        if (!keep(++number, *line))
            continue;
        replacement.Write(*line);
        replacement.Write("\r\n");
    }
    replacement.Commit();
}

}  // namespace platform::files
