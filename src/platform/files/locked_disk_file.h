#pragma once

#include <string>

#include "platform/files/lock_wait.h"
#include "platform/locked_text_file.h"
#include "platform/posix/file_descriptor.h"

namespace platform::files {

/// A text file of this machine, locked. Its lines pass through a small buffer, whatever its size.
class LockedDiskFile final : public LockedTextFile {
public:
    /// Borrows `wait` for the construction alone. Failure: as for FileSystem::OpenLocked.
    LockedDiskFile(const std::string& path, LockWait& wait);

    [[nodiscard]] std::int64_t CountLines() const override;
    void KeepLines(const std::function<bool(std::int64_t number, std::string_view line)>& keep) override;

private:
    std::string path_;
    FileDescriptor file_;
};

}  // namespace platform::files
